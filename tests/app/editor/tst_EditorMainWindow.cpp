#include "Photographs.h"
#include "TestDocuments.h"
#include "TestPictures.h"
#include "YDCurvesWidget.h"
#include "YDSignWidget.h"
#include "catalog/AdjustmentDialog.h"
#include "catalog/AdjustmentSession.h"
#include "catalog/PanelDialog.h"
#include "core/KVApplication.h"
#include "editor/AdjustmentPanel.h"
#include "editor/DocumentWindow.h"
#include "editor/MainWindow.h"
#include "gui/KVDocumentView.h"
#include "image/YDIterativeCurvesTransformation.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QGraphicsView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTimer>
#include <QToolButton>
#include <QUrl>

namespace {

constexpr int PatienceMs = 20000;

QVector<QMessageBox*> MessageBoxes()
{
    QVector<QMessageBox*> boxes;
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const box = qobject_cast<QMessageBox*>(widget))
            if (box->isVisible())
                boxes.append(box);
    return boxes;
}

/// Presses a button of the question that comes next, in its own event loop.
void AnswerNextQuestion(QObject* context, QMessageBox::StandardButton answer)
{
    auto* const timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, answer] {
        if (MessageBoxes().isEmpty())
            return;
        timer->stop();
        timer->deleteLater();
        MessageBoxes().constFirst()->button(answer)->click();
    });
    timer->start(1);
}

QAction* ActionOf(const MainWindow& window, const QString& text)
{
    for (QAction* const action : window.findChildren<QAction*>()) {
        QString plain = action->text();
        if (plain.remove(QLatin1Char('&')).startsWith(text))
            return action;
    }
    return nullptr;
}

/// Mouse and keyboard in the dialog of the curves.
struct CurvesHand
{
    explicit CurvesHand(AdjustmentDialog& dialog)
        : widget(*qobject_cast<YDCurvesWidget*>(dialog.Widget())),
          curve(dialog.findChild<QGraphicsView*>(QStringLiteral("m_pCurveView"))),
          channel(dialog.findChild<QComboBox*>(QStringLiteral("m_pChannel"))),
          buttons(dialog.findChild<QDialogButtonBox*>(QStringLiteral("m_pButtons")))
    {
        dialog.activateWindow();
        if (!QTest::qWaitForWindowActive(&dialog))
            qFatal("the dialog does not become active");
    }

    QVector<QPoint> PointsOf(std::size_t list) const { return widget.GetValue().curves[list]; }
    /// Whether there is one point between the ends, at `point` but for what a pixel is more than a level.
    bool HasPointNear(std::size_t list, const QPoint& point) const
    {
        return PointsOf(list).size() == 3 && (PointsOf(list)[1] - point).manhattanLength() <= 2;
    }
    QPoint PlaceOf(const QPoint& point) const
    {
        return curve->mapFromScene(YDCurvesWidget::ToViewPoint(point));
    }
    void Drag(const QPoint& from, const QPoint& to) const
    {
        QWidget* const viewport = curve->viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, PlaceOf(from));
        QMouseEvent move(QEvent::MouseMove, PlaceOf(to), viewport->mapToGlobal(PlaceOf(to)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier); // with the button held, which QTest does not know
        QApplication::sendEvent(viewport, &move);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, PlaceOf(to));
    }
    void Click(QDialogButtonBox::StandardButton button) const
    {
        QTest::mouseClick(buttons->button(button), Qt::LeftButton);
    }
    RGBA32iImage Applied(const RGBA32iImage& picture) const
    {
        const RGBA32iImage image = picture.DeepCopy();
        const auto curves = widget.GetValue().curves;
        const YDIterativeCurvesTransformation rule(curves.data(), 100);
        for (int y = 0; y < image.Height(); ++y)
            rule.ProcessRow(image.Row(y), image.Width());
        return image;
    }

    const YDCurvesWidget& widget;
    QGraphicsView* const curve;
    QComboBox* const channel;
    QDialogButtonBox* const buttons;
};

} // namespace

class TestEditorMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void PicturesOpenInTabs();
    void APictureThatIsOpenIsShownAgain();
    void ABrokenFileShowsOneMessage();
    void SeveralBrokenFilesShareAMessage();
    void DroppedFilesAreOpened();
    void OtherDropsAreIgnored();
    void EveryAdjustmentIsInTheMenu();
    void TheMenuShowsTheGroups();
    void ThePanelsChoiceOffersEveryAdjustment();
    void AnOpenAdjustmentForbidsOtherChanges();
    void ColoursArePickedOnThePictureAndUndone();
    void ACurveIsDrawnResetDrawnAgainAndUndone();
    void AStampIsPreviewedTakenAndUndone();
    void ThePanelDrawsOrSaysWhyNot();
    void ThePanelAppliesItsSettings();
    void ThePanelKeepsToTheSelection();
    void ThePanelAppliesWhatADialogPreviews_data();
    void ThePanelAppliesWhatADialogPreviews();
    void WhatThePanelWaitsForMayGo_data();
    void WhatThePanelWaitsForMayGo();
    void ThePanelOutlivesADocumentItIsAdjusting_data();
    void ThePanelOutlivesADocumentItIsAdjusting();
    void SavingWritesTheFile();
    void ClosingAChangedPictureAsks_data();
    void ClosingAChangedPictureAsks();
    void QuittingSavesFirst();
    void QuittingSavesEveryPicture();
    void AFailedSaveEndsTheQuitting();
    void ClosingATabDuringAnAdjustmentCancelsIt();
    void ThinkingBetterOfClosingKeepsTheAdjustmentOpen();
    void TheSplitterSettingIsKept();
    void RecentFilesAreKept();
    void ShortcutsReachTheirCommands();
    void TheZoomCanBeTyped();

private:
    QString MakePicture(const char* name, int grey = 100) const;
    DocumentWindow* Open(MainWindow& window, const QString& path) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestEditorMainWindow::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_EditorMainWindow"));
    qRegisterMetaType<DocumentWindow*>();
}

void TestEditorMainWindow::init()
{
    QSettings().clear();
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", m_folder->path().toLocal8Bit());
}

void TestEditorMainWindow::cleanup() { qDeleteAll(MessageBoxes()); }

QString TestEditorMainWindow::MakePicture(const char* name, int grey) const
{
    const QString path = m_folder->filePath(QString::fromUtf8(name));
    return ImageToQImage(TestPictures::Grey(60, 40, grey)).save(path) ? path : QString();
}

DocumentWindow* TestEditorMainWindow::Open(MainWindow& window, const QString& path) const
{
    QSignalSpy opened(&window, &MainWindow::DocumentOpened);
    window.show();
    window.Open({path});
    return opened.count() > 0 || opened.wait(PatienceMs) ? window.CurrentWindow() : nullptr;
}

void TestEditorMainWindow::PicturesOpenInTabs()
{
    MainWindow window;
    window.show();
    QSignalSpy opened(&window, &MainWindow::DocumentOpened);
    window.Open({MakePicture("one.png"), MakePicture("two.png", 50)});
    QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 2, PatienceMs);
    QCOMPARE(window.findChildren<DocumentWindow*>().size(), 2);
    QVERIFY(window.CurrentWindow());
    QCOMPARE(window.CurrentWindow()->GetDocument()->Size(), QSize(60, 40));
    QVERIFY(window.windowTitle().startsWith(window.CurrentWindow()->GetDocument()->Name()));
}

void TestEditorMainWindow::APictureThatIsOpenIsShownAgain()
{
    MainWindow window;
    window.show();
    const QString one = MakePicture("one.png");
    DocumentWindow* const first = Open(window, one);
    QVERIFY(Open(window, MakePicture("two.png")) != first);
    window.Open({one});
    QCOMPARE(window.CurrentWindow(), first);
    QCOMPARE(window.findChildren<DocumentWindow*>().size(), 2);
}

void TestEditorMainWindow::ABrokenFileShowsOneMessage()
{
    MainWindow window;
    const QString path = m_folder->filePath(QStringLiteral("broken.png"));
    QFile whole(MakePicture("whole.png"));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    QFile broken(path);
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write(whole.readAll().left(60));
    broken.close();
    QSignalSpy failed(&window, &MainWindow::OpeningFailed);
    window.Open({path});
    QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, PatienceMs);
    QCOMPARE(MessageBoxes().size(), 1);
    QVERIFY(MessageBoxes().constFirst()->informativeText().contains(QStringLiteral("broken.png")));
    QVERIFY(!window.CurrentWindow());
}

void TestEditorMainWindow::SeveralBrokenFilesShareAMessage()
{
    MainWindow window;
    QSignalSpy failed(&window, &MainWindow::OpeningFailed);
    QSignalSpy opened(&window, &MainWindow::DocumentOpened);
    window.Open(
        {QStringLiteral("/nowhere/a.png"), MakePicture("whole.png"), QStringLiteral("/nowhere/b.png")});
    QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, PatienceMs);
    QCOMPARE(opened.count(), 1);
    QCOMPARE(MessageBoxes().size(), 1);
    const QString why = MessageBoxes().constFirst()->informativeText();
    QVERIFY2(why.contains(QStringLiteral("a.png")) && why.contains(QStringLiteral("b.png")), qPrintable(why));
}

void TestEditorMainWindow::DroppedFilesAreOpened()
{
    MainWindow window;
    window.show();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(MakePicture("dropped.png"))});
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    QVERIFY(enter.isAccepted());
    QSignalSpy opened(&window, &MainWindow::DocumentOpened);
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    QVERIFY(drop.isAccepted());
    QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, PatienceMs);
    QVERIFY2(!window.CurrentWindow()->View()->viewport()->acceptDrops(), "the view lets drops through");
}

void TestEditorMainWindow::OtherDropsAreIgnored()
{
    MainWindow window;
    QMimeData data;
    data.setText(QStringLiteral("no file"));
    data.setUrls({QUrl(QStringLiteral("http://example.org/a.png"))});
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&window, &enter);
    QVERIFY(!enter.isAccepted());
}

void TestEditorMainWindow::EveryAdjustmentIsInTheMenu()
{
    MainWindow window;
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries()) {
        const auto* const action = window.findChild<QAction*>(entry.name);
        QVERIFY2(action, qPrintable(entry.name));
        QVERIFY(!action->isEnabled());
    }
    QVERIFY(Open(window, MakePicture("one.png")));
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries())
        QVERIFY(window.findChild<QAction*>(entry.name)->isEnabled());
}

void TestEditorMainWindow::TheMenuShowsTheGroups()
{
    MainWindow window;
    const auto& entries = AdjustmentCatalog::Entries();
    const auto* const menu =
        window.findChild<QAction*>(entries.front().name)->associatedWidgets().constFirst();
    QStringList expected;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i == 0 || entries[i].group != entries[i - 1].group)
            expected.append(operations::Catalog::Title(entries[i].group));
        expected.append(entries[i].name);
    }
    QStringList shown;
    const QList<QAction*> actions = menu->actions();
    for (const QAction* const action : actions)
        shown.append(action->isSeparator() ? action->text() : action->objectName());
    QCOMPARE(shown, expected);
}

void TestEditorMainWindow::ThePanelsChoiceOffersEveryAdjustment()
{
    AdjustmentPanel panel;
    auto* const choice = panel.findChild<QComboBox*>(QStringLiteral("AdjustmentChoice"));
    QStringList expected;
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries())
        expected.append(entry.Title());
    QStringList shown;
    for (int item = 0; item < choice->count(); ++item) {
        choice->setCurrentIndex(item); // a line between groups, which has no text, chooses nothing
        if (choice->itemText(item).isEmpty())
            continue;
        shown.append(choice->itemText(item));
        QCOMPARE(panel.Chosen().Title(), choice->itemText(item));
    }
    QCOMPARE(shown, expected);
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries()) {
        panel.Choose(entry);
        QCOMPARE(panel.Chosen().name, entry.name);
        QCOMPARE(choice->currentText(), entry.Title());
    }
}

void TestEditorMainWindow::AnOpenAdjustmentForbidsOtherChanges()
{
    MainWindow window;
    window.show();
    DocumentWindow* const document = Open(window, MakePicture("one.png"));
    document->GetDocument()->Commit(TestPictures::Grey(60, 40, 1), QStringLiteral("Change"));
    QVERIFY(ActionOf(window, QStringLiteral("Undo"))->isEnabled());
    window.findChild<QAction*>(AdjustmentCatalog::Entries().front().name)->trigger();
    QVERIFY(document->Session());
    for (const char* const text : {"Undo", "Save", "Select All", "Select Rectangle"})
        QVERIFY2(!ActionOf(window, QLatin1String(text))->isEnabled(), text);
    QVERIFY(!window.Panel()->findChild<QPushButton*>(QStringLiteral("ApplyButton"))->isEnabled());
    QVERIFY(ActionOf(window, QStringLiteral("Zoom In"))->isEnabled());
    document->Session()->Reject();
    for (const char* const text : {"Undo", "Save", "Select All", "Select Rectangle"})
        QVERIFY2(ActionOf(window, QLatin1String(text))->isEnabled(), text);
}

/// Black, white and grey, each from a rectangle dragged on the picture while the dialog is open.
void TestEditorMainWindow::ColoursArePickedOnThePictureAndUndone()
{
    const RGBA32iImage photograph =
        Photographs::Load(QStringLiteral("seeding_by_Clements_Engelhardt.jpg"), 400);
    const QString path = m_folder->filePath(QStringLiteral("photograph.png"));
    QVERIFY(ImageToQImage(photograph).save(path));
    MainWindow window;
    window.resize(1000, 700);
    DocumentWindow* const document = Open(window, path);
    window.findChild<QAction*>(QStringLiteral("curves"))->trigger();
    AdjustmentSession* const session = document->Session();
    YDAdjustmentWidget* const curves = session->Dialog()->Widget();
    QSignalSpy data(curves, &YDAdjustmentWidget::DataChanged);
    KVDocumentView* const view = document->View();
    int row = 30;
    for (const char* const picker : {"m_pBlack", "m_pWhite", "m_pGray"}) {
        curves->findChild<QToolButton*>(QLatin1String(picker))->click();
        QTest::mousePress(view->viewport(), Qt::LeftButton, {}, view->mapFromScene(100, row));
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, view->mapFromScene(140, row + 20));
        row += 60;
        data.wait(PatienceMs);
    }
    QCOMPARE(data.count(), 3);
    QSignalSpy accepted(session, &AdjustmentSession::Accepted);
    session->Accept();
    QTRY_COMPARE_WITH_TIMEOUT(accepted.count(), 1, PatienceMs);
    const Document& picture = *document->GetDocument();
    QVERIFY(!TestPictures::AreEqual(picture.Picture(), photograph));
    QCOMPARE(view->viewport()->cursor().shape(), Qt::ArrowCursor);
    ActionOf(window, QStringLiteral("Undo"))->trigger();
    QVERIFY(TestPictures::AreEqual(picture.Picture(), photograph));
}

/// By mouse and keyboard as a user does it, from the opening of the dialog to the undoing of its result.
void TestEditorMainWindow::ACurveIsDrawnResetDrawnAgainAndUndone()
{
    const RGBA32iImage photograph =
        Photographs::Load(QStringLiteral("seeding_by_Clements_Engelhardt.jpg"), 400);
    const QString path = m_folder->filePath(QStringLiteral("photograph.png"));
    QVERIFY(ImageToQImage(photograph).save(path));
    MainWindow window;
    DocumentWindow* const document = Open(window, path);
    window.findChild<QAction*>(QStringLiteral("curves"))->trigger();
    AdjustmentSession* const session = document->Session();
    const CurvesHand hand(*session->Dialog());

    QTest::mouseClick(hand.curve->viewport(), Qt::LeftButton, {}, hand.PlaceOf({100, 100}));
    QCOMPARE(hand.PointsOf(0).size(), 3);
    hand.Drag(hand.PointsOf(0)[1], {80, 160});
    QVERIFY(hand.HasPointNear(0, {80, 160}));
    const RGBA32iImage bent = hand.Applied(photograph);
    QTRY_VERIFY_WITH_TIMEOUT(TestPictures::AreEqual(document->View()->Preview(), bent), PatienceMs);
    QTest::keyClick(hand.curve, Qt::Key_Delete);
    QCOMPARE(hand.PointsOf(0), YDCurvePoints::Straight());

    hand.channel->setFocus();
    QTest::keyClick(hand.channel, Qt::Key_Down);
    hand.Drag({200, 200}, {180, 90});
    QVERIFY(hand.HasPointNear(1, {180, 90}));
    QCOMPARE(hand.PointsOf(0), YDCurvePoints::Straight());
    hand.Click(QDialogButtonBox::Reset);
    QCOMPARE(hand.PointsOf(1), YDCurvePoints::Straight());
    QCOMPARE(hand.channel->currentIndex(), 0);

    hand.Drag({60, 60}, {70, 30});
    QVERIFY(hand.HasPointNear(0, {70, 30}));
    const RGBA32iImage expected = hand.Applied(photograph);
    QSignalSpy accepted(session, &AdjustmentSession::Accepted);
    hand.Click(QDialogButtonBox::Ok);
    QTRY_COMPARE_WITH_TIMEOUT(accepted.count(), 1, PatienceMs);
    const Document& picture = *document->GetDocument();
    QVERIFY(TestPictures::AreEqual(picture.Picture(), expected));
    QVERIFY(!TestPictures::AreEqual(expected, photograph));
    ActionOf(window, QStringLiteral("Undo"))->trigger();
    QVERIFY(TestPictures::AreEqual(picture.Picture(), photograph));
}

void TestEditorMainWindow::AStampIsPreviewedTakenAndUndone()
{
    const RGBA32iImage photograph =
        Photographs::Load(QStringLiteral("seeding_by_Clements_Engelhardt.jpg"), 400);
    const QString path = m_folder->filePath(QStringLiteral("photograph.png"));
    QVERIFY(ImageToQImage(photograph).save(path));
    MainWindow window;
    DocumentWindow* const document = Open(window, path);
    window.findChild<QAction*>(QStringLiteral("sign"))->trigger();
    AdjustmentSession* const session = document->Session();
    AdjustmentDialog& dialog = *session->Dialog();
    auto& widget = static_cast<YDSignWidget&>(PanelDialog::PanelOf(*dialog.Widget()));
    const auto* const remark = dialog.findChild<QLabel*>(QStringLiteral("Remark"));
    QTRY_VERIFY_WITH_TIMEOUT(remark->text().contains(QStringLiteral("no image is chosen")), PatienceMs);
    YDSignWidget::Params params;
    params.fileName = m_folder->filePath(QStringLiteral("missing.png"));
    widget.SetValue(params);
    session->Restart();
    QTRY_VERIFY_WITH_TIMEOUT(remark->text().contains(QStringLiteral("missing.png")), PatienceMs);
    params.fileName = MakePicture("stamp.png", 200);
    widget.SetValue(params);
    dialog.findChild<QComboBox*>(QStringLiteral("m_pBlendCombo"))->setCurrentIndex(1); // multiply
    dialog.findChild<QSpinBox*>(QStringLiteral("m_pLeftMargin"))->setValue(30);
    const RGBA32iImage expected = widget.MakeTask().ApplyToCopy(photograph).picture;
    QVERIFY(!TestPictures::AreEqual(expected, photograph));
    QTRY_VERIFY_WITH_TIMEOUT(TestPictures::AreEqual(document->View()->Preview(), expected), PatienceMs);
    QVERIFY(!remark->isVisible());
    QSignalSpy accepted(session, &AdjustmentSession::Accepted);
    dialog.findChild<QDialogButtonBox*>(QStringLiteral("m_pButtons"))->button(QDialogButtonBox::Ok)->click();
    QTRY_COMPARE_WITH_TIMEOUT(accepted.count(), 1, PatienceMs);
    const Document& picture = *document->GetDocument();
    QVERIFY(TestPictures::AreEqual(picture.Picture(), expected));
    ActionOf(window, QStringLiteral("Undo"))->trigger();
    QVERIFY(TestPictures::AreEqual(picture.Picture(), photograph));
}

void TestEditorMainWindow::ThePanelDrawsOrSaysWhyNot()
{
    MainWindow window;
    window.show();
    Document& document = *Open(window, MakePicture("one.png"))->GetDocument();
    AdjustmentPanel& panel = *window.Panel();
    panel.Choose(*AdjustmentCatalog::Find(QStringLiteral("sign")));
    YDSignWidget::Params params;
    params.fileName = m_folder->filePath(QStringLiteral("missing.png"));
    qobject_cast<YDSignWidget*>(panel.Widget())->SetValue(params);
    panel.Apply();
    QTRY_COMPARE_WITH_TIMEOUT(MessageBoxes().size(), 1, PatienceMs);
    QVERIFY(MessageBoxes().constFirst()->informativeText().startsWith(params.fileName + QLatin1String(": ")));
    MessageBoxes().constFirst()->close();
    QVERIFY(!document.IsLocked());
    QVERIFY(!document.UndoStack()->canUndo());

    params.fileName = MakePicture("stamp.png", 200);
    params.margins.setCoords(20, 10, 0, 0);
    qobject_cast<YDSignWidget*>(panel.Widget())->SetValue(params);
    QSignalSpy applied(&panel, &AdjustmentPanel::Applied);
    panel.Apply();
    QVERIFY(document.IsLocked());
    QTRY_COMPARE_WITH_TIMEOUT(applied.count(), 1, PatienceMs);
    QCOMPARE(int(document.Picture().Row(10)[19].g), 100);
    QCOMPARE(int(document.Picture().Row(10)[20].g), 200);
    QVERIFY(panel.isEnabled());
    document.UndoStack()->undo();
    QCOMPARE(int(document.Picture().Row(10)[20].g), 100);
}

void TestEditorMainWindow::ThePanelAppliesItsSettings()
{
    MainWindow window;
    window.show();
    Document& document = *Open(window, MakePicture("one.png"))->GetDocument();
    AdjustmentPanel& panel = *window.Panel();
    panel.Choose(*AdjustmentCatalog::Find(QStringLiteral("brightness-contrast")));
    panel.Widget()->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"))->setValue(40);
    QSignalSpy applied(&panel, &AdjustmentPanel::Applied);
    panel.findChild<QPushButton*>(QStringLiteral("ApplyButton"))->click();
    QTRY_COMPARE_WITH_TIMEOUT(applied.count(), 1, PatienceMs);
    QCOMPARE(int(document.Picture().Row(0)[0].g), 140);
    QVERIFY(!document.IsLocked());
    document.UndoStack()->undo();
    QCOMPARE(int(document.Picture().Row(0)[0].g), 100);
    panel.findChild<QPushButton*>(QStringLiteral("ResetButton"))->click();
    QCOMPARE(panel.Widget()->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"))->value(), 0);
}

void TestEditorMainWindow::ThePanelKeepsToTheSelection()
{
    MainWindow window;
    window.show();
    Document& document = *Open(window, MakePicture("one.png"))->GetDocument();
    QPainterPath left;
    left.addRect(0, 0, 30, 40);
    document.Select(left);
    AdjustmentPanel& panel = *window.Panel();
    panel.Choose(*AdjustmentCatalog::Find(QStringLiteral("brightness-contrast")));
    panel.Widget()->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"))->setValue(40);
    QSignalSpy applied(&panel, &AdjustmentPanel::Applied);
    panel.Apply();
    QTRY_COMPARE_WITH_TIMEOUT(applied.count(), 1, PatienceMs);
    QCOMPARE(int(document.Picture().Row(20)[29].g), 140);
    QCOMPARE(int(document.Picture().Row(20)[30].g), 100);
}

void TestEditorMainWindow::ThePanelAppliesWhatADialogPreviews_data()
{
    QTest::addColumn<QString>("slider");
    QTest::newRow("replace-color") << "m_pDestinationOpacity";
    QTest::newRow("fill-color") << "horizontalSlider";
}

void TestEditorMainWindow::ThePanelAppliesWhatADialogPreviews()
{
    QFETCH(QString, slider);
    MainWindow window;
    window.show();
    Document& document = *Open(window, MakePicture("one.png"))->GetDocument();
    const bool isBlack = slider == QLatin1String("horizontalSlider");
    AdjustmentPanel& panel = *window.Panel();
    panel.Choose(*AdjustmentCatalog::Find(QString::fromLatin1(QTest::currentDataTag())));
    panel.Widget()->findChild<QSlider*>(slider)->setValue(50);
    QSignalSpy applied(&panel, &AdjustmentPanel::Applied);
    panel.findChild<QPushButton*>(QStringLiteral("ApplyButton"))->click();
    QVERIFY(document.IsLocked());
    QTRY_COMPARE_WITH_TIMEOUT(applied.count(), 1, PatienceMs);
    // 100 * 128 / 255, and 255 * 127 / 255 more
    QCOMPARE(int(document.Picture().Row(39)[59].g), isBlack ? 50 : 177);
    QVERIFY(!document.IsLocked());
    QVERIFY(panel.isEnabled());
    QVERIFY(!QGuiApplication::overrideCursor());
    document.UndoStack()->undo();
    QCOMPARE(int(document.Picture().Row(39)[59].g), 100);
}

void TestEditorMainWindow::WhatThePanelWaitsForMayGo_data()
{
    QTest::addColumn<bool>("panelGoes");
    QTest::addColumn<bool>("documentGoes");
    QTest::newRow("the document") << false << true;
    QTest::newRow("the panel") << true << false;
    QTest::newRow("both") << true << true;
}

void TestEditorMainWindow::WhatThePanelWaitsForMayGo()
{
    QFETCH(bool, panelGoes);
    QFETCH(bool, documentGoes);
    auto document = std::make_unique<Document>(TestDocuments::Opened(TestPictures::Grey(60, 40, 100)));
    auto panel = std::make_unique<AdjustmentPanel>();
    panel->Choose(*AdjustmentCatalog::Find(QStringLiteral("fill-color")));
    panel->SetDocument(document.get());
    panel->Apply();
    QVERIFY(document->IsLocked());
    if (documentGoes)
        document.reset();
    if (panelGoes)
        panel.reset();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    if (document) {
        QVERIFY(!document->IsLocked());
        QCOMPARE(int(document->Picture().Row(0)[0].g), 100);
    }
    if (panel)
        QVERIFY(panel->isEnabled());
}

void TestEditorMainWindow::ThePanelOutlivesADocumentItIsAdjusting_data()
{
    QTest::addColumn<bool>("hasSelection");
    QTest::addColumn<bool>("switches");
    QTest::newRow("copying, another document in front") << false << true;
    QTest::newRow("copying, no other document") << false << false;
    QTest::newRow("masking, another document in front") << true << true;
    QTest::newRow("masking, no other document") << true << false;
}

void TestEditorMainWindow::ThePanelOutlivesADocumentItIsAdjusting()
{
    QFETCH(bool, hasSelection);
    QFETCH(bool, switches);
    auto first = std::make_unique<Document>(TestDocuments::Opened(TestPictures::Grey(60, 40, 100)));
    Document second(TestDocuments::Opened(TestPictures::Grey(60, 40, 50)));
    if (hasSelection) {
        QPainterPath left;
        left.addRect(0, 0, 30, 40);
        first->Select(left);
    }
    AdjustmentPanel panel;
    panel.Choose(*AdjustmentCatalog::Find(QStringLiteral("brightness-contrast")));
    panel.Widget()->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"))->setValue(40);
    panel.SetDocument(first.get());
    panel.Apply();
    QVERIFY(!panel.isEnabled());
    if (switches)
        panel.SetDocument(&second);
    first.reset();
    QVERIFY(panel.isEnabled());
    panel.SetDocument(&second);
    QSignalSpy applied(&panel, &AdjustmentPanel::Applied);
    panel.Apply();
    QTRY_COMPARE_WITH_TIMEOUT(applied.count(), 1, PatienceMs);
    QCOMPARE(int(second.Picture().Row(0)[0].g), 90);
    QVERIFY(panel.isEnabled());
}

void TestEditorMainWindow::SavingWritesTheFile()
{
    MainWindow window;
    const QString path = MakePicture("one.png");
    DocumentWindow* const document = Open(window, path);
    document->GetDocument()->Commit(TestPictures::Grey(60, 40, 7), QStringLiteral("Change"));
    QVERIFY(window.isWindowModified());
    QSignalSpy saved(document, &DocumentWindow::Saved);
    ActionOf(window, QStringLiteral("Save"))->trigger();
    QVERIFY(document->IsSaving());
    QTRY_COMPARE_WITH_TIMEOUT(saved.count(), 1, PatienceMs);
    QVERIFY(!window.isWindowModified());
    QCOMPARE(QImage(path).pixel(5, 5), qRgb(7, 7, 7));
}

void TestEditorMainWindow::ClosingAChangedPictureAsks_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<int>("grey");
    QTest::newRow("Save") << int(QMessageBox::Save) << true << 7;
    QTest::newRow("Discard") << int(QMessageBox::Discard) << true << 100;
    QTest::newRow("Cancel") << int(QMessageBox::Cancel) << false << 100;
}

void TestEditorMainWindow::ClosingAChangedPictureAsks()
{
    QFETCH(int, answer);
    QFETCH(bool, closes);
    QFETCH(int, grey);
    MainWindow window;
    window.show();
    const QString path = MakePicture("one.png");
    const QPointer<DocumentWindow> document = Open(window, path);
    document->GetDocument()->Commit(TestPictures::Grey(60, 40, 7), QStringLiteral("Change"));
    AnswerNextQuestion(&window, QMessageBox::StandardButton(answer));
    ActionOf(window, QStringLiteral("Close"))->trigger();
    if (closes)
        QTRY_VERIFY_WITH_TIMEOUT(!document, PatienceMs);
    QCOMPARE(document.isNull(), closes);
    QCOMPARE(QImage(path).pixel(5, 5), qRgb(grey, grey, grey));
}

void TestEditorMainWindow::QuittingSavesFirst()
{
    MainWindow window;
    window.show();
    const QString path = MakePicture("one.png");
    Open(window, path)->GetDocument()->Commit(TestPictures::Grey(60, 40, 7), QStringLiteral("Change"));
    AnswerNextQuestion(&window, QMessageBox::Save);
    QVERIFY(!window.close());
    QTRY_VERIFY_WITH_TIMEOUT(!window.isVisible(), PatienceMs);
    QCOMPARE(QImage(path).pixel(5, 5), qRgb(7, 7, 7));
}

void TestEditorMainWindow::QuittingSavesEveryPicture()
{
    MainWindow window;
    window.show();
    const QStringList paths{MakePicture("one.png"), MakePicture("two.png"), MakePicture("three.png")};
    for (const QString& path : paths)
        Open(window, path)->GetDocument()->Commit(TestPictures::Grey(60, 40, 7), QStringLiteral("Change"));
    QTimer answers;
    connect(&answers, &QTimer::timeout, &window, [] {
        const auto boxes = MessageBoxes();
        for (QMessageBox* const box : boxes)
            box->button(QMessageBox::Save)->click();
    });
    answers.start(1);
    QVERIFY(!window.close());
    QTRY_VERIFY_WITH_TIMEOUT(!window.isVisible(), PatienceMs);
    for (const QString& path : paths)
        QCOMPARE(QImage(path).pixel(5, 5), qRgb(7, 7, 7));
}

void TestEditorMainWindow::AFailedSaveEndsTheQuitting()
{
    MainWindow window;
    window.show();
    const QPointer<DocumentWindow> document = Open(window, MakePicture("one.png"));
    document->GetDocument()->Commit(TestPictures::Grey(60, 40, 7), QStringLiteral("Change"));
    QVERIFY(m_folder->remove());
    QSignalSpy failed(document.data(), &DocumentWindow::SaveFailed);
    AnswerNextQuestion(&window, QMessageBox::Save);
    QVERIFY(!window.close());
    QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, PatienceMs);
    QVERIFY(document);
    qDeleteAll(MessageBoxes());
    AnswerNextQuestion(&window, QMessageBox::Discard);
    ActionOf(window, QStringLiteral("Close"))->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!document, PatienceMs);
    QCoreApplication::processEvents(); // the main window hears of it in the event loop
    QVERIFY(window.isVisible());
}

void TestEditorMainWindow::ClosingATabDuringAnAdjustmentCancelsIt()
{
    MainWindow window;
    window.show();
    const QPointer<DocumentWindow> document = Open(window, MakePicture("one.png"));
    window.findChild<QAction*>(AdjustmentCatalog::Entries().front().name)->trigger();
    const QPointer<AdjustmentSession> session = document->Session();
    QVERIFY(session);
    ActionOf(window, QStringLiteral("Close"))->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!document, PatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!session, PatienceMs);
}

void TestEditorMainWindow::ThinkingBetterOfClosingKeepsTheAdjustmentOpen()
{
    MainWindow window;
    window.show();
    const QPointer<DocumentWindow> document = Open(window, MakePicture("one.png"));
    document->GetDocument()->Commit(TestPictures::Grey(60, 40, 7), QStringLiteral("Change"));
    window.findChild<QAction*>(AdjustmentCatalog::Entries().front().name)->trigger();
    const QPointer<AdjustmentSession> session = document->Session();
    QVERIFY(session);
    AnswerNextQuestion(&window, QMessageBox::Cancel);
    ActionOf(window, QStringLiteral("Close"))->trigger();
    QVERIFY(document);
    QVERIFY(session && session->IsOpen());
    AnswerNextQuestion(&window, QMessageBox::Save);
    ActionOf(window, QStringLiteral("Close"))->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!document, PatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!session, PatienceMs);
}

void TestEditorMainWindow::TheSplitterSettingIsKept()
{
    const QString key = KVApplication::GetName(KVApplication::HidePreviewSlider);
    MainWindow window;
    DocumentWindow* const document = Open(window, MakePicture("one.png"));
    QAction* const action = ActionOf(window, QStringLiteral("Hide Preview Slider"));
    action->trigger();
    QVERIFY(document->View()->IsSplitterHidden());
    QVERIFY(KVApplication::GetUserValue(key, false));
    document->View()->HideSplitter(false); // as the dialog's toggle does
    QVERIFY(!action->isChecked());
    QVERIFY(!KVApplication::GetUserValue(key, true));
}

void TestEditorMainWindow::RecentFilesAreKept()
{
    MainWindow window;
    const QString one = MakePicture("one.png");
    const QString two = MakePicture("two.png");
    QVERIFY(Open(window, one));
    QVERIFY(Open(window, two));
    QCOMPARE(QSettings().value(QStringLiteral("files/recent")).toStringList(), (QStringList{two, one}));
}

void TestEditorMainWindow::ShortcutsReachTheirCommands()
{
    MainWindow window;
    const QPointer<DocumentWindow> document = Open(window, MakePicture("one.png"));
    QVERIFY(QTest::qWaitForWindowActive(&window));
    KVDocumentView* const view = document->View();
    QTest::keyClick(view, Qt::Key_1, Qt::ControlModifier);
    QCOMPARE(view->Zoom(), 1.0);
    QTest::keyClick(view, Qt::Key_Plus, Qt::ControlModifier);
    QVERIFY(view->Zoom() > 1.0);
    QTest::keyClick(view, Qt::Key_Minus, Qt::ControlModifier);
    QCOMPARE(view->Zoom(), 1.0);
    QTest::keyClick(view, Qt::Key_0, Qt::ControlModifier);
    QVERIFY(view->IsZoomedToFit());
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    QVERIFY(document->GetDocument()->HasSelection());
    QTest::keyClick(view, Qt::Key_D, Qt::ControlModifier);
    QVERIFY(!document->GetDocument()->HasSelection());
    QTest::keyClick(view, Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(document->GetDocument()->HasSelection());
    document->GetDocument()->Commit(TestPictures::Grey(60, 40, 7), QStringLiteral("Change"));
    QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!document->GetDocument()->IsModified());
    QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(document->GetDocument()->IsModified());
    QTest::keyClick(view, Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!document->GetDocument()->IsModified(), PatienceMs);
    QTest::keyClick(view, Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!document, PatienceMs);
}

void TestEditorMainWindow::TheZoomCanBeTyped()
{
    MainWindow window;
    window.show();
    DocumentWindow* const document = Open(window, MakePicture("one.png"));
    auto* const zoom = window.findChild<QComboBox*>(QStringLiteral("ZoomCombo"));
    zoom->setFocus();
    zoom->lineEdit()->setText(QStringLiteral("250"));
    QTest::keyClick(zoom->lineEdit(), Qt::Key_Return);
    QCOMPARE(document->View()->Zoom(), 2.5);
    zoom->lineEdit()->setText(QStringLiteral("nonsense"));
    QTest::keyClick(zoom->lineEdit(), Qt::Key_Return);
    QCOMPARE(document->View()->Zoom(), 2.5);
    QCOMPARE(zoom->currentText(), QStringLiteral("250 %"));
}

QTEST_MAIN(TestEditorMainWindow)
#include "tst_EditorMainWindow.moc"
