#include "MemoryLimit.h"
#include "TestDocuments.h"
#include "TestPictures.h"
#include "editor/Document.h"

#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int PatienceMs = 20000;

QPainterPath Rectangle(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect);
    return path;
}

operations::Selection MaskOf(Document& document)
{
    operations::Selection mask;
    bool isThere = false;
    document.WithMask(&document, [&](const operations::Selection& made) {
        mask = made;
        isThere = true;
    });
    [&isThere] { QTRY_VERIFY_WITH_TIMEOUT(isThere, PatienceMs); }();
    return mask;
}

QRect AreaOf(const operations::Selection& mask) { return mask.bounds.translated(mask.offset); }

} // namespace

class TestEditorDocument : public QObject
{
    Q_OBJECT

private slots:
    void AFileThatHoldsMoreIsKnownUntilItIsReplaced_data();
    void AFileThatHoldsMoreIsKnownUntilItIsReplaced();
    void AChangeIsUndoneAndRedone();
    void UndoNamesTheChange();
    void ADocumentIsModifiedWhereItDiffersFromItsFile();
    void SavingAnOlderPictureLeavesTheNewerOneModified();
    void UndoStepsKeepToTheirBudget_data();
    void UndoStepsKeepToTheirBudget();
    void SelectingKeepsWhatLiesOnThePicture();
    void SelectingNothingNewIsSilent();
    void InvertingTurnsInsideOut();
    void InvertingAllSelectsNone();
    void TheMaskFollowsTheSelection();
    void TheMaskFollowsTheFeather();
    void AMaskIsOfTheSelectionAsItIsWhenItIsReady();
    void NoSelectionAndAWholeOneNeedNoMask();
    void AMaskForSomebodyGoneIsDropped();
    void AMaskThatMemoryHasNoRoomForIsMissing();
    void LockingIsAnnouncedOnce();
};

void TestEditorDocument::AChangeIsUndoneAndRedone()
{
    const RGBA32iImage first = TestPictures::Grey(20, 10, 10);
    const RGBA32iImage second = TestPictures::Grey(20, 10, 20);
    Document document(TestDocuments::Opened(first));
    QSignalSpy changed(&document, &Document::PictureChanged);
    document.Commit(second, QStringLiteral("Change"));
    QVERIFY(document.Picture().SharesPixelsWith(second));
    document.UndoStack()->undo();
    QVERIFY(document.Picture().SharesPixelsWith(first));
    document.UndoStack()->redo();
    QVERIFY(document.Picture().SharesPixelsWith(second));
    QCOMPARE(changed.count(), 3);
}

void TestEditorDocument::UndoNamesTheChange()
{
    Document document(TestDocuments::Opened(TestPictures::Grey(20, 10, 10)));
    document.Commit(TestPictures::Grey(20, 10, 20), QStringLiteral("Curves"));
    QCOMPARE(document.UndoStack()->undoText(), QStringLiteral("Curves"));
}

void TestEditorDocument::ADocumentIsModifiedWhereItDiffersFromItsFile()
{
    Document document(TestDocuments::Opened(TestPictures::Grey(20, 10, 10)));
    QSignalSpy modified(&document, &Document::ModifiedChanged);
    QVERIFY(!document.IsModified());
    document.Commit(TestPictures::Grey(20, 10, 20), QStringLiteral("Change"));
    QVERIFY(document.IsModified());
    document.UndoStack()->undo();
    QVERIFY(!document.IsModified());
    document.UndoStack()->redo();
    document.MarkSaved(document.Picture(), QStringLiteral("/nowhere/b.jpg"), "jpeg");
    QVERIFY(!document.IsModified());
    QCOMPARE(document.Name(), QStringLiteral("b.jpg"));
    QCOMPARE(document.Format(), QByteArray("jpeg"));
    document.UndoStack()->undo();
    QVERIFY(document.IsModified());
    QCOMPARE(modified.count(), 5);
}

void TestEditorDocument::SavingAnOlderPictureLeavesTheNewerOneModified()
{
    Document document(TestDocuments::Opened(TestPictures::Grey(20, 10, 10)));
    document.Commit(TestPictures::Grey(20, 10, 20), QStringLiteral("Saved"));
    const RGBA32iImage saved = document.Picture();
    document.Commit(TestPictures::Grey(20, 10, 30), QStringLiteral("Meanwhile"));
    document.MarkSaved(saved, document.Path(), document.Format());
    QVERIFY(document.IsModified());
    document.UndoStack()->undo();
    QVERIFY(!document.IsModified());
}

void TestEditorDocument::UndoStepsKeepToTheirBudget_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("steps");
    QTest::newRow("small pictures are bounded by number") << 128 << 100 << 50;
    QTest::newRow("48 MiB a picture") << 4096 << 3072 << 21; // 1024 / 48 = 21.3
}

void TestEditorDocument::UndoStepsKeepToTheirBudget()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, steps);
    Document document(TestDocuments::Opened(RGBA32iImage(width, height)));
    const RGBA32iImage one(width, height);
    const RGBA32iImage other(width, height);
    for (int i = 0; i < 60; ++i)
        document.Commit(i % 2 == 0 ? one : other, QString::number(i));
    QCOMPARE(document.UndoStack()->count(), steps);
    QCOMPARE(document.UndoStack()->undoText(), QStringLiteral("59"));
}

void TestEditorDocument::SelectingKeepsWhatLiesOnThePicture()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    QSignalSpy changed(&document, &Document::SelectionChanged);
    document.Select(Rectangle({-10, 10, 30, 100}));
    QCOMPARE(document.Selection().boundingRect(), QRectF(0, 10, 20, 40));
    document.Select(Rectangle({200, 10, 30, 30}));
    QVERIFY(!document.HasSelection());
    QCOMPARE(changed.count(), 2);
}

void TestEditorDocument::SelectingNothingNewIsSilent()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    QSignalSpy changed(&document, &Document::SelectionChanged);
    document.SelectNone();
    QCOMPARE(changed.count(), 0);
}

void TestEditorDocument::InvertingTurnsInsideOut()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    document.Select(Rectangle({10, 10, 20, 20}));
    document.InvertSelection();
    QVERIFY(!document.Selection().contains(QPointF(15, 15)));
    QVERIFY(document.Selection().contains(QPointF(5, 5)));
    document.InvertSelection();
    QCOMPARE(document.Selection().boundingRect(), QRectF(10, 10, 20, 20));
}

void TestEditorDocument::InvertingAllSelectsNone()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    document.InvertSelection();
    QCOMPARE(document.Selection().boundingRect(), QRectF(0, 0, 100, 50));
    document.InvertSelection();
    QVERIFY(!document.HasSelection());
}

void TestEditorDocument::TheMaskFollowsTheSelection()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    document.Select(Rectangle({10, 10, 20, 20}));
    QCOMPARE(AreaOf(MaskOf(document)), QRect(10, 10, 20, 20));
    document.Select(Rectangle({30, 5, 10, 10}));
    QCOMPARE(AreaOf(MaskOf(document)), QRect(30, 5, 10, 10));
    document.SelectNone();
    QVERIFY(MaskOf(document).SelectsAll());
}

void TestEditorDocument::TheMaskFollowsTheFeather()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    document.Select(Rectangle({40, 20, 20, 10}));
    const QRect sharp = AreaOf(MaskOf(document));
    document.SetFeather(6);
    const QRect soft = AreaOf(MaskOf(document));
    QVERIFY(soft.contains(sharp.adjusted(-3, -3, 3, 3)));
}

void TestEditorDocument::AMaskIsOfTheSelectionAsItIsWhenItIsReady()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    document.Select(Rectangle({10, 10, 20, 20}));
    QVector<QRect> areas;
    const auto remember = [&areas](const operations::Selection& mask) { areas.append(AreaOf(mask)); };
    document.WithMask(this, remember);
    document.Select(Rectangle({50, 10, 20, 20}));
    document.WithMask(this, remember);
    QTRY_COMPARE_WITH_TIMEOUT(areas.size(), 2, PatienceMs);
    QCOMPARE(areas, QVector<QRect>(2, QRect(50, 10, 20, 20)));
}

void TestEditorDocument::NoSelectionAndAWholeOneNeedNoMask()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    document.SetFeather(20);
    int calls = 0;
    const auto check = [&calls](const operations::Selection& mask) { calls += mask.SelectsAll() ? 1 : 0; };
    document.WithMask(this, check);
    document.SelectAll();
    document.WithMask(this, check);
    QCOMPARE(calls, 2);
}

void TestEditorDocument::AMaskForSomebodyGoneIsDropped()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    document.Select(Rectangle({10, 10, 20, 20}));
    bool isDropped = true;
    bool isDone = false;
    {
        QObject context;
        document.WithMask(&context, [&isDropped](const operations::Selection&) { isDropped = false; });
    }
    document.WithMask(this, [&isDone](const operations::Selection&) { isDone = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isDone, PatienceMs);
    QVERIFY(isDropped);
}

void TestEditorDocument::AMaskThatMemoryHasNoRoomForIsMissing()
{
    Document document(TestDocuments::Opened(RGBA32iImage::Uninitialized(15000, 10000)));
    document.Select(Rectangle({0, 0, 14000, 10000}));
    bool isMissing = false;
    const MemoryLimit noRoomForItsCoverage;
    document.WithMask(this, [&isMissing](const operations::Selection& mask) { isMissing = mask.isMissing; });
    QTRY_VERIFY_WITH_TIMEOUT(isMissing, PatienceMs);
}

void TestEditorDocument::LockingIsAnnouncedOnce()
{
    Document document(TestDocuments::Opened(RGBA32iImage(100, 50)));
    QSignalSpy locked(&document, &Document::LockedChanged);
    document.SetLocked(true);
    document.SetLocked(true);
    QVERIFY(document.IsLocked());
    QCOMPARE(locked.count(), 1);
}

void TestEditorDocument::AFileThatHoldsMoreIsKnownUntilItIsReplaced_data()
{
    QTest::addColumn<bool>("depthReduced");
    QTest::addColumn<bool>("hasMorePictures");
    QTest::addColumn<bool>("holdsLess");
    QTest::newRow("all of it") << false << false << false;
    QTest::newRow("deeper") << true << false << true;
    QTest::newRow("several pictures") << false << true << true;
}

void TestEditorDocument::AFileThatHoldsMoreIsKnownUntilItIsReplaced()
{
    QFETCH(bool, depthReduced);
    QFETCH(bool, hasMorePictures);
    QFETCH(bool, holdsLess);
    OpenedPicture opened = TestDocuments::Opened(TestPictures::Grey(20, 10, 10));
    opened.depthReduced = depthReduced;
    opened.hasMorePictures = hasMorePictures;
    Document document(opened);
    QCOMPARE(document.HoldsLessThanItsFile(), holdsLess);
    document.MarkSaved(document.Picture(), QStringLiteral("/nowhere/b.png"), "png");
    QVERIFY(!document.HoldsLessThanItsFile());
}

QTEST_MAIN(TestEditorDocument)
#include "tst_EditorDocument.moc"
