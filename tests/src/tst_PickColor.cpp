#include "DialogDriver.h"
#include "PickColor.h"

#include <QPointer>
#include <QTest>

#include <memory>

namespace {

const QColor Before(10, 20, 30);
const QColor First(1, 1, 1);
const QColor Second(2, 2, 2);

using namespace DialogDriver;

} // namespace

class TestPickColor : public QObject
{
    Q_OBJECT

private slots:
    void ThePreviewFollowsTheDialog_data();
    void ThePreviewFollowsTheDialog();
    void WithoutAPreviewOnlyAnAcceptedColourIsTaken_data();
    void WithoutAPreviewOnlyAnAcceptedColourIsTaken();
    void TheDialogBeginsWithTitleAndColour();
    void TheDialogIsTheKindOfWindowThatIsAskedFor();
    void TheColourBeforeSurvivesThePreview();
    void NoDialogIsLeft();
    void NothingIsCalledOnceTheOwnerIsGone();
    void TheOwnerMayGoInTheAnswer();
    void ADialogThatGoesAloneIsACancelledOne();
};

void TestPickColor::ThePreviewFollowsTheDialog_data()
{
    QTest::addColumn<Colors>("picks");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<Colors>("previews");
    QTest::addColumn<Colors>("accepted");
    QTest::newRow("accept changed") << Colors{First, Second} << true << Colors{First, Second}
                                    << Colors{Second};
    QTest::newRow("accept unchanged") << Colors{} << true << Colors{} << Colors{Before};
    QTest::newRow("cancel changed") << Colors{First, Second} << false << Colors{First, Second, Before}
                                    << Colors{};
    QTest::newRow("cancel unchanged") << Colors{} << false << Colors{Before} << Colors{};
}

void TestPickColor::ThePreviewFollowsTheDialog()
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(Colors, previews);
    QFETCH(Colors, accepted);
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, picks);
        Close(dialog, isAccepted);
    });
    Colors seen;
    Colors taken;
    QWidget owner;
    PickColor(
        &owner, QString(), Before, [&taken](const QColor& color) { taken.append(color); },
        [&seen](const QColor& color) { seen.append(color); });
    QCOMPARE(seen, previews);
    QCOMPARE(taken, accepted);
}

void TestPickColor::WithoutAPreviewOnlyAnAcceptedColourIsTaken_data()
{
    QTest::addColumn<Colors>("picks");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<Colors>("accepted");
    QTest::newRow("accept changed") << Colors{First, Second} << true << Colors{Second};
    QTest::newRow("accept unchanged") << Colors{} << true << Colors{Before};
    QTest::newRow("cancel changed") << Colors{First, Second} << false << Colors{};
    QTest::newRow("cancel unchanged") << Colors{} << false << Colors{};
}

void TestPickColor::WithoutAPreviewOnlyAnAcceptedColourIsTaken()
{
    QFETCH(Colors, picks);
    QFETCH(bool, isAccepted);
    QFETCH(Colors, accepted);
    Colors taken;
    InTheDialog([&](KVColorDialog& dialog) {
        Pick(dialog, picks);
        QCOMPARE(taken.size(), 0);
        Close(dialog, isAccepted);
    });
    QWidget owner;
    PickColor(&owner, QString(), Before, [&taken](const QColor& color) { taken.append(color); });
    QCOMPARE(taken, accepted);
}

void TestPickColor::TheDialogBeginsWithTitleAndColour()
{
    QWidget owner;
    InTheDialog([&owner](KVColorDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("A title"));
        QCOMPARE(dialog.GetColor(), Before);
        QCOMPARE(dialog.parentWidget(), &owner);
        QVERIFY(dialog.isModal());
        dialog.reject();
    });
    bool isTaken = false;
    PickColor(&owner, QStringLiteral("A title"), Before, [&isTaken](const QColor&) { isTaken = true; });
    QVERIFY(!isTaken);
}

void TestPickColor::TheDialogIsTheKindOfWindowThatIsAskedFor()
{
    QWidget owner;
    for (const Qt::WindowType type : {Qt::Dialog, Qt::Tool}) {
        InTheDialog([type](KVColorDialog& dialog) { QCOMPARE(dialog.windowType(), type); });
        PickColor(
            &owner, QString(), Before, [](const QColor&) {}, {},
            type == Qt::Dialog ? Qt::WindowFlags() : type);
    }
}

void TestPickColor::TheColourBeforeSurvivesThePreview()
{
    QWidget owner;
    QColor present = Before;
    InTheDialog([&present](KVColorDialog& dialog) {
        Pick(dialog, {First});
        QCOMPARE(present, First);
        dialog.reject();
    });
    const auto take = [&present](const QColor& color) { present = color; };
    PickColor(&owner, QString(), present, take, take); // the preview writes to what was handed in
    QCOMPARE(present, Before);
}

void TestPickColor::NoDialogIsLeft()
{
    QWidget owner;
    for (const bool isAccepted : {false, true}) {
        InTheDialog([isAccepted](KVColorDialog& dialog) { Close(dialog, isAccepted); });
        PickColor(&owner, QString(), Before, [](const QColor&) {});
        QVERIFY(owner.findChildren<KVColorDialog*>().isEmpty());
    }
}

void TestPickColor::NothingIsCalledOnceTheOwnerIsGone()
{
    auto owner = std::make_unique<QWidget>();
    int calls = 0;
    QPointer<KVColorDialog> open;
    InTheDialog([&](KVColorDialog& dialog) {
        open = &dialog;
        Pick(dialog, {First});
        QCOMPARE(calls, 1);
        owner.reset();
    });
    const auto take = [&calls](const QColor&) { ++calls; };
    PickColor(owner.get(), QString(), Before, take, take);
    QVERIFY(!open);
    QCOMPARE(calls, 1);
}

void TestPickColor::TheOwnerMayGoInTheAnswer()
{
    auto owner = std::make_unique<QWidget>();
    InTheDialog([](KVColorDialog& dialog) { dialog.accept(); });
    PickColor(owner.get(), QString(), Before, [&owner](const QColor&) { owner.reset(); });
    QVERIFY(!owner);
}

void TestPickColor::ADialogThatGoesAloneIsACancelledOne()
{
    QWidget owner;
    QColor present = Before;
    InTheDialog([](KVColorDialog& dialog) {
        Pick(dialog, {First});
        delete &dialog;
    });
    const auto take = [&present](const QColor& color) { present = color; };
    PickColor(&owner, QString(), Before, take, take);
    QCOMPARE(present, Before);
}

QTEST_MAIN(TestPickColor)
#include "tst_PickColor.moc"
