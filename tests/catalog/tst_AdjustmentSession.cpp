#include "SlowAdjustment.h"
#include "TestDocuments.h"
#include "TestPictures.h"
#include "YDBrightnessContrastWidget.h"
#include "catalog/AdjustmentDialog.h"
#include "catalog/AdjustmentSession.h"
#include "core/KVApplication.h"
#include "editor/DocumentWindow.h"
#include "gui/KVDocumentView.h"
#include "gui/YDOperationProgressDlg.h"
#include "operations/MaskOfShape.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTimer>

namespace {

constexpr int PatienceMs = 20000;
constexpr int NeverMs = 1000000;
constexpr int Width = 40;
constexpr int Height = 30;

const AdjustmentEntry& Brightness()
{
    return *AdjustmentCatalog::Find(QStringLiteral("brightness-contrast"));
}

/// A session on a view, and what it tells.
struct Bench
{
    QWidget window;
    KVDocumentView view{&window};
    const AdjustmentEntry entry;
    QPointer<AdjustmentSession> session;
    QVector<RGBA32iImage> accepted;
    int rejected = 0;

    explicit Bench(const AdjustmentEntry& adjustment,
                   const RGBA32iImage& picture = TestPictures::Grey(Width, Height, 100),
                   const operations::Selection& mask = operations::Selection())
        : entry(adjustment)
    {
        view.SetImage(picture);
        session = new AdjustmentSession(entry, &view, &window);
        QObject::connect(session, &AdjustmentSession::Accepted, &window,
                         [this](const RGBA32iImage& image) { accepted.append(image); });
        QObject::connect(session, &AdjustmentSession::Rejected, &window, [this] { ++rejected; });
        session->Start(picture, mask);
    }

    AdjustmentDialog& Dialog() const { return *session->Dialog(); }
    SlowAdjustment& Slow() const
    {
        return static_cast<SlowAdjustment&>(PanelDialog::PanelOf(*Dialog().Widget()));
    }
    QAbstractButton* Button(QDialogButtonBox::StandardButton which) const
    {
        return Dialog().findChild<QDialogButtonBox*>(QStringLiteral("m_pButtons"))->button(which);
    }
    void PressOk() const { Button(QDialogButtonBox::Ok)->click(); }
    int PreviewGrey() const { return view.Preview().IsEmpty() ? -1 : view.Preview().Row(0)[0].g; }
};

YDOperationProgressDlg* WaitDialog()
{
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<YDOperationProgressDlg*>(widget))
            if (dialog->isVisible())
                return dialog;
    return nullptr;
}

/// Calls `work` inside the event loop of the wait dialog once it is shown.
template <class Work>
void WhenWaitDialogShows(QObject* context, Work work)
{
    auto* const timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, work] {
        if (!WaitDialog())
            return;
        timer->deleteLater();
        timer->stop();
        work();
    });
    timer->start(1);
}

} // namespace

class TestAdjustmentSession : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void TheWidgetIsToldThePicturesSize();
    void ThePreviewIsShownInTheView();
    void OkDeliversWhatThePanelApplies_data();
    void OkDeliversWhatThePanelApplies();
    void OkDeliversTheFill();
    void OkDeliversTheReplacedColourWhateverIsSelected();
    void OkTakesAChangeThatIsLessThan50MsOld();
    void OkWithoutAChangeDeliversThePicture();
    void CancelHidesDialogAndPreviewAtOnce();
    void EscAndClosingAreCancel_data();
    void EscAndClosingAreCancel();
    void EnterIsOk();
    void KeysAdjustAtOnce();
    void TheDialogIsActiveAgainAfterAModalOne();
    void OkDuringAJobThatEndsInTimeShowsNoDialog();
    void OkDuringALongJobWaitsInADialog();
    void AbortingTheWaitLeavesTheDialogOpen();
    void OkAfterAnAbortedWaitDeliversTheLastChange();
    void CancelDuringAJobDeliversNothing();
    void CancelWhileOkWaitsDeliversNothing();
    void AChangeWhileOkWaitsIsDelivered();
    void DestroyingTheViewIsHarmless();
    void DestroyingTheWindowDuringAJobIsHarmless();
    void TheDialogsToggleFollowsTheView();
    void APanelOnlyIsFramedByTheDialog();
    void APanelOnlyIsPreviewed();
    void TheGuiThreadDoesNotWaitForADrawing();
    void APanelOnlyDeliversTheLastChange();
    void WhatCannotBeDrawnIsSaidInTheDialog();
    void OkOnWhatCannotBeDrawnLeavesTheDialogOpen();
    void CancelDuringADrawingDeliversNothing();
    void AnAdjustmentLocksItsDocument();
    void ClosingTheDocumentDuringAJobIsHarmless();
};

void TestAdjustmentSession::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_AdjustmentSession"));
}

void TestAdjustmentSession::init()
{
    SlowAdjustment::mayEnd = true;
    SlowAdjustment::isStubborn = false;
    SlowAdjustment::jobsBegun = 0;
    SlowAdjustment::jobsEnded = 0;
    KVApplication::SetProgressTimeout(20);
    KVApplication::SetUserValue(KVApplication::GetName(KVApplication::HidePreviewSlider), false);
}

void TestAdjustmentSession::cleanup()
{
    SlowAdjustment::mayEnd = true;
    QTRY_COMPARE_WITH_TIMEOUT(SlowAdjustment::jobsEnded.load(), SlowAdjustment::jobsBegun.load(), PatienceMs);
    QVERIFY(!QApplication::overrideCursor());
}

void TestAdjustmentSession::TheWidgetIsToldThePicturesSize()
{
    Bench b(SlowAdjustment::Entry());
    QCOMPARE(b.Slow().Activation(), QSize(Width, Height));
}

void TestAdjustmentSession::ThePreviewIsShownInTheView()
{
    Bench bench(SlowAdjustment::Entry());
    QVERIFY(bench.Dialog().isVisible());
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 0, PatienceMs);
    bench.Slow().SetGrey(70);
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 70, PatienceMs);
}

void TestAdjustmentSession::OkDeliversWhatThePanelApplies_data()
{
    QTest::addColumn<bool>("isSelected");
    QTest::newRow("whole picture") << false;
    QTest::newRow("feathered ellipse") << true;
}

void TestAdjustmentSession::OkDeliversWhatThePanelApplies()
{
    QFETCH(bool, isSelected);
    const RGBA32iImage picture = TestPictures::Noise(300, 200);
    QPainterPath ellipse;
    ellipse.addEllipse(QRectF(50, 40, 200, 150));
    const operations::Selection mask =
        isSelected ? operations::MaskOfShape(ellipse, 10, QSize(300, 200)) : operations::Selection();

    Bench bench(Brightness(), picture, mask);
    bench.Dialog().findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"))->setValue(35);
    bench.Dialog().findChild<QSlider*>(QStringLiteral("m_pContrastSlider"))->setValue(-20);
    bench.PressOk(); // well within the 50 ms in which changes are gathered
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);

    const auto panel = Brightness().makeWidget(false, nullptr);
    panel->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"))->setValue(35);
    panel->findChild<QSlider*>(QStringLiteral("m_pContrastSlider"))->setValue(-20);
    const RGBA32iImage expected = panel->MakeTask().ApplyToCopy(picture, mask).picture;
    QVERIFY(!TestPictures::AreEqual(expected, picture));
    QVERIFY(TestPictures::AreEqual(bench.accepted.first(), expected));
    QVERIFY2(TestPictures::AreEqual(picture, TestPictures::Noise(300, 200)), "the source stays as it is");
}

void TestAdjustmentSession::OkDeliversTheFill()
{
    QPainterPath left;
    left.addRect(0, 0, 10, Height);
    Bench bench(*AdjustmentCatalog::Find(QStringLiteral("fill-color")),
                TestPictures::Grey(Width, Height, 100),
                operations::MaskOfShape(left, 0, QSize(Width, Height)));
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 0, PatienceMs); // black at first
    bench.Dialog().findChild<QSlider*>(QStringLiteral("horizontalSlider"))->setValue(50);
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QCOMPARE(int(bench.accepted.first().Row(5)[9].g), 50); // 100 * 128 / 255
    QCOMPARE(int(bench.accepted.first().Row(5)[10].g), 100);
}

void TestAdjustmentSession::OkDeliversTheReplacedColourWhateverIsSelected()
{
    QPainterPath left;
    left.addRect(0, 0, 10, Height);
    const RGBA32iImage picture = TestPictures::Grey(Width, Height, 100);
    for (int y = 0; y < Height; ++y)
        picture.Row(y)[20] = YDRGBA32i(7, 7, 7, 255); // a wall between two areas
    Bench bench(*AdjustmentCatalog::Find(QStringLiteral("replace-color")), picture,
                operations::MaskOfShape(left, 0, QSize(Width, Height)));
    bench.Dialog().findChild<QComboBox*>(QStringLiteral("m_pPositionType"))->setCurrentIndex(3);
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    for (const int x : {0, 19})
        QCOMPARE(int(bench.accepted.first().Row(5)[x].g), 100);
    QCOMPARE(int(bench.accepted.first().Row(5)[20].g), 7);
    for (const int x : {21, Width - 1})
        QCOMPARE(int(bench.accepted.first().Row(5)[x].g), 255);
}

void TestAdjustmentSession::OkTakesAChangeThatIsLessThan50MsOld()
{
    Bench bench(SlowAdjustment::Entry());
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 0, PatienceMs);
    bench.Slow().SetGrey(33);
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QCOMPARE(int(bench.accepted.first().Row(0)[0].g), 33);
    QVERIFY(bench.view.Preview().IsEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!bench.session, PatienceMs);
}

void TestAdjustmentSession::OkWithoutAChangeDeliversThePicture()
{
    const RGBA32iImage picture = TestPictures::Noise(Width, Height);
    Bench bench(Brightness(), picture);
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QVERIFY(TestPictures::AreEqual(bench.accepted.first(), picture));
}

void TestAdjustmentSession::CancelHidesDialogAndPreviewAtOnce()
{
    Bench bench(SlowAdjustment::Entry());
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 0, PatienceMs);
    const QPointer<AdjustmentDialog> dialog = &bench.Dialog();
    bench.Button(QDialogButtonBox::Cancel)->click();
    QVERIFY(!dialog->isVisible());
    QVERIFY(bench.view.Preview().IsEmpty());
    QCOMPARE(bench.rejected, 1);
    QTRY_VERIFY_WITH_TIMEOUT(!bench.session, PatienceMs);
    QVERIFY(!dialog);
    QVERIFY(bench.accepted.isEmpty());
}

void TestAdjustmentSession::EscAndClosingAreCancel_data()
{
    QTest::addColumn<bool>("isEsc");
    QTest::newRow("Esc") << true;
    QTest::newRow("closing the window") << false;
}

void TestAdjustmentSession::EscAndClosingAreCancel()
{
    QFETCH(bool, isEsc);
    Bench bench(SlowAdjustment::Entry());
    bench.Slow().SetGrey(9);
    if (isEsc)
        QTest::keyClick(&bench.Dialog(), Qt::Key_Escape);
    else
        bench.Dialog().close();
    QCOMPARE(bench.rejected, 1);
    QTRY_VERIFY_WITH_TIMEOUT(!bench.session, PatienceMs);
    QVERIFY(bench.accepted.isEmpty());
}

void TestAdjustmentSession::EnterIsOk()
{
    Bench bench(Brightness());
    QVERIFY(QTest::qWaitForWindowExposed(&bench.Dialog()));
    auto* const spin = bench.Dialog().findChild<QWidget*>(QStringLiteral("m_pBrightnessSpin"));
    QTest::keyClicks(spin, QStringLiteral("12"));
    QTest::keyClick(spin, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
}

void TestAdjustmentSession::KeysAdjustAtOnce()
{
    Bench bench(Brightness());
    QVERIFY(QTest::qWaitForWindowActive(&bench.Dialog()));
    auto* const slider = bench.Dialog().findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"));
    QTest::keyClick(bench.Dialog().focusWidget(), Qt::Key_Right);
    QTest::keyClick(bench.Dialog().focusWidget(), Qt::Key_Up);
    QVERIFY(slider->value() > 0);
    QTest::keyClick(bench.Dialog().focusWidget(), Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
}

void TestAdjustmentSession::TheDialogIsActiveAgainAfterAModalOne()
{
    Bench bench(*AdjustmentCatalog::Find(QStringLiteral("fill-color")));
    bench.view.show();
    bench.Dialog().activateWindow();
    QTRY_VERIFY_WITH_TIMEOUT(bench.Dialog().isActiveWindow(), PatienceMs);
    QTimer::singleShot(0, &bench.view, [&bench] {
        auto* const modal = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(modal);
        QTRY_VERIFY_WITH_TIMEOUT(modal->isActiveWindow(), PatienceMs);
        bench.view.activateWindow(); // as window managers do that pass over tool windows
        modal->reject();
    });
    bench.Dialog().findChild<QPushButton*>(QStringLiteral("m_pColor"))->click();
    QTRY_VERIFY_WITH_TIMEOUT(bench.Dialog().isActiveWindow(), PatienceMs);
}

void TestAdjustmentSession::OkDuringAJobThatEndsInTimeShowsNoDialog()
{
    KVApplication::SetProgressTimeout(200);
    SlowAdjustment::mayEnd = false;
    Bench bench(SlowAdjustment::Entry());
    bench.PressOk();
    QVERIFY(!bench.Dialog().Widget()->isEnabled());
    bool wasShown = false;
    WhenWaitDialogShows(&bench.window, [&wasShown] { wasShown = true; });
    SlowAdjustment::mayEnd = true;
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QVERIFY(!wasShown);
}

void TestAdjustmentSession::OkDuringALongJobWaitsInADialog()
{
    SlowAdjustment::mayEnd = false;
    Bench bench(SlowAdjustment::Entry());
    bench.Slow().SetGrey(44);
    bool wasShown = false;
    WhenWaitDialogShows(&bench.window, [&wasShown] {
        wasShown = true;
        SlowAdjustment::mayEnd = true;
    });
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QVERIFY(wasShown);
    QCOMPARE(int(bench.accepted.first().Row(0)[0].g), 44);
}

void TestAdjustmentSession::AbortingTheWaitLeavesTheDialogOpen()
{
    SlowAdjustment::mayEnd = false;
    Bench bench(SlowAdjustment::Entry());
    bench.Slow().SetGrey(44);
    QSignalSpy finished(bench.Dialog().Widget(), &YDAdjustmentWidget::Finished);
    WhenWaitDialogShows(&bench.window, [] { WaitDialog()->reject(); });
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 0);
    QVERIFY(bench.session && bench.session->IsOpen());
    QVERIFY(bench.Dialog().isVisible());
    QVERIFY(bench.Dialog().Widget()->isEnabled());
    QVERIFY(!bench.Dialog().Widget()->IsCancelProcessing());
    QVERIFY(bench.accepted.isEmpty());
    SlowAdjustment::mayEnd = true;
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 44, PatienceMs);
}

void TestAdjustmentSession::OkAfterAnAbortedWaitDeliversTheLastChange()
{
    SlowAdjustment::mayEnd = true;
    Bench bench(SlowAdjustment::Entry());
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 0, PatienceMs);
    SlowAdjustment::mayEnd = false;
    bench.Slow().SetGrey(55);
    QSignalSpy finished(bench.Dialog().Widget(), &YDAdjustmentWidget::Finished);
    WhenWaitDialogShows(&bench.window, [] { WaitDialog()->reject(); });
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    SlowAdjustment::mayEnd = true;
    bench.PressOk(); // the last result is still that of grey 0
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QCOMPARE(int(bench.accepted.first().Row(0)[0].g), 55);
}

void TestAdjustmentSession::CancelDuringAJobDeliversNothing()
{
    SlowAdjustment::mayEnd = false;
    SlowAdjustment::isStubborn = true;
    Bench bench(SlowAdjustment::Entry());
    QTRY_COMPARE_WITH_TIMEOUT(SlowAdjustment::jobsBegun.load(), 1, PatienceMs);
    bench.Button(QDialogButtonBox::Cancel)->click();
    QVERIFY(!bench.Dialog().isVisible());
    QVERIFY2(bench.session, "the widget lives until its job has ended");
    WhenWaitDialogShows(&bench.window, [] { SlowAdjustment::mayEnd = true; });
    QTRY_VERIFY_WITH_TIMEOUT(!bench.session, PatienceMs);
    QCOMPARE(bench.rejected, 1);
    QVERIFY(bench.accepted.isEmpty());
    QVERIFY(bench.view.Preview().IsEmpty());
}

void TestAdjustmentSession::CancelWhileOkWaitsDeliversNothing()
{
    SlowAdjustment::mayEnd = false;
    Bench bench(SlowAdjustment::Entry());
    WhenWaitDialogShows(&bench.window, [&bench] { bench.session->Reject(); });
    bench.PressOk();
    QTRY_VERIFY_WITH_TIMEOUT(!bench.session, PatienceMs);
    QCOMPARE(bench.rejected, 1);
    QVERIFY(bench.accepted.isEmpty());
}

void TestAdjustmentSession::AChangeWhileOkWaitsIsDelivered()
{
    KVApplication::SetProgressTimeout(150);
    Bench bench(SlowAdjustment::Entry());
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 0, PatienceMs);
    SlowAdjustment::mayEnd = false;
    bench.Slow().SetGrey(60);
    bench.PressOk();
    SlowAdjustment::mayEnd = true;
    bench.Slow().SetGrey(61); // by itself: a picker's late answer, say
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QCOMPARE(int(bench.accepted.first().Row(0)[0].g), 61);
}

void TestAdjustmentSession::DestroyingTheViewIsHarmless()
{
    QWidget window;
    auto* const view = new KVDocumentView(&window);
    const AdjustmentEntry entry = SlowAdjustment::Entry();
    const QPointer<AdjustmentSession> session = new AdjustmentSession(entry, view, &window);
    session->Start(TestPictures::Grey(Width, Height, 1), operations::Selection());
    delete view;
    session->Reject();
    QTRY_VERIFY_WITH_TIMEOUT(!session, PatienceMs);
}

void TestAdjustmentSession::DestroyingTheWindowDuringAJobIsHarmless()
{
    SlowAdjustment::mayEnd = false;
    QPointer<AdjustmentSession> session;
    {
        Bench bench(SlowAdjustment::Entry());
        session = bench.session;
        QTRY_COMPARE_WITH_TIMEOUT(SlowAdjustment::jobsBegun.load(), 1, PatienceMs);
    }
    QVERIFY(!session);
    QCOMPARE(SlowAdjustment::jobsEnded.load(), 1);
}

void TestAdjustmentSession::TheDialogsToggleFollowsTheView()
{
    Bench bench(SlowAdjustment::Entry());
    auto* const toggle = bench.Dialog().findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    bench.view.HideSplitter(true);
    QVERIFY(toggle->isChecked());
    toggle->setChecked(false);
    QVERIFY(!bench.view.IsSplitterHidden());
}

void TestAdjustmentSession::APanelOnlyIsFramedByTheDialog()
{
    Bench bench(SlowAdjustment::PanelEntry());
    bench.Slow().SetGrey(70);
    bench.Button(QDialogButtonBox::Reset)->click();
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 0, PatienceMs);
    auto* const toggle = bench.Dialog().findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    QVERIFY(toggle);
    QSignalSpy hidings(&bench.view, &KVDocumentView::SplitterHiddenChanged);
    toggle->click();
    QCOMPARE(hidings, (QList<QList<QVariant>>{{true}}));
    bench.view.HideSplitter(false);
    QVERIFY(!toggle->isChecked());
    bench.Button(QDialogButtonBox::Cancel)->click();
    QCOMPARE(bench.rejected, 1);
    QVERIFY(!bench.Dialog().isVisible());
}

void TestAdjustmentSession::APanelOnlyIsPreviewed()
{
    Bench bench(SlowAdjustment::PanelEntry());
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 0, PatienceMs);
    for (int grey = 1; grey <= 70; ++grey)
        bench.Slow().SetGrey(grey);
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 70, PatienceMs);
    QCOMPARE(SlowAdjustment::jobsBegun.load(), 2); // a burst of changes is drawn once
}

void TestAdjustmentSession::TheGuiThreadDoesNotWaitForADrawing()
{
    SlowAdjustment::mayEnd = false;
    Bench bench(SlowAdjustment::PanelEntry());
    QSignalSpy previews(bench.session, &AdjustmentSession::PreviewReady);
    QTRY_COMPARE_WITH_TIMEOUT(SlowAdjustment::jobsBegun.load(), 1, PatienceMs);
    bench.Slow().SetGrey(70);
    bench.session->Restart();
    QCOMPARE(SlowAdjustment::jobsBegun.load(), 1);
    SlowAdjustment::mayEnd = true;
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 70, PatienceMs);
    QCOMPARE(previews.size(), 1); // what was drawn of former settings is not shown
}

void TestAdjustmentSession::APanelOnlyDeliversTheLastChange()
{
    Bench bench(SlowAdjustment::PanelEntry());
    bench.Slow().SetGrey(71);
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QCOMPARE(int(bench.accepted.first().Row(0)[0].g), 71);
    QTRY_VERIFY_WITH_TIMEOUT(!bench.session, PatienceMs);
}

void TestAdjustmentSession::WhatCannotBeDrawnIsSaidInTheDialog()
{
    Bench bench(SlowAdjustment::PanelEntry());
    const auto* const remark = bench.Dialog().findChild<QLabel*>(QStringLiteral("Remark"));
    QVERIFY(remark->isHidden());
    bench.Slow().SetGrey(-1);
    QTRY_VERIFY_WITH_TIMEOUT(remark->isVisible(), PatienceMs);
    QVERIFY(remark->text().endsWith(QStringLiteral("where: there is no such grey")));
    QVERIFY(bench.view.Preview().IsEmpty());
    QVERIFY(!bench.Dialog().findChild<QMessageBox*>());
    bench.Slow().SetGrey(3);
    QTRY_COMPARE_WITH_TIMEOUT(bench.PreviewGrey(), 3, PatienceMs);
    QVERIFY(remark->isHidden());
}

void TestAdjustmentSession::OkOnWhatCannotBeDrawnLeavesTheDialogOpen()
{
    Bench bench(SlowAdjustment::PanelEntry());
    bench.Slow().SetGrey(-1);
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(bench.Dialog().findChildren<QMessageBox*>().size(), 1, PatienceMs);
    auto* const box = bench.Dialog().findChild<QMessageBox*>();
    QCOMPARE(box->informativeText(), QStringLiteral("/some/where: there is no such grey"));
    QVERIFY(bench.accepted.isEmpty());
    QVERIFY(bench.session->IsOpen());
    box->close();
    bench.Slow().SetGrey(3);
    QVERIFY(bench.Button(QDialogButtonBox::Ok)->isEnabled());
    bench.PressOk();
    QTRY_COMPARE_WITH_TIMEOUT(bench.accepted.size(), 1, PatienceMs);
    QCOMPARE(int(bench.accepted.first().Row(0)[0].g), 3);
}

void TestAdjustmentSession::CancelDuringADrawingDeliversNothing()
{
    SlowAdjustment::mayEnd = false;
    Bench bench(SlowAdjustment::PanelEntry());
    bench.PressOk();
    QVERIFY(bench.accepted.isEmpty());
    bench.Dialog().reject();
    QCOMPARE(bench.rejected, 1);
    SlowAdjustment::mayEnd = true;
    QTRY_VERIFY_WITH_TIMEOUT(!bench.session, PatienceMs);
    QVERIFY(bench.accepted.isEmpty());
    QVERIFY(bench.view.Preview().IsEmpty());
}

void TestAdjustmentSession::AnAdjustmentLocksItsDocument()
{
    DocumentWindow window(TestDocuments::Opened(TestPictures::Grey(Width, Height, 100)));
    window.show();
    const AdjustmentEntry entry = SlowAdjustment::Entry();
    window.RunAdjustment(entry);
    QVERIFY(window.Session());
    QVERIFY(window.GetDocument()->IsLocked());
    const AdjustmentSession* const session = window.Session();
    window.RunAdjustment(entry);
    QCOMPARE(window.Session(), session);
    static_cast<SlowAdjustment*>(session->Dialog()->Widget())->SetGrey(5);
    window.Session()->Accept();
    QTRY_VERIFY_WITH_TIMEOUT(!window.GetDocument()->IsLocked(), PatienceMs);
    QVERIFY(!window.Session());
    QCOMPARE(int(window.GetDocument()->Picture().Row(0)[0].g), 5);
    QCOMPARE(window.GetDocument()->UndoStack()->undoText(), QStringLiteral("Slow"));
    QVERIFY(window.isWindowModified());
}

void TestAdjustmentSession::ClosingTheDocumentDuringAJobIsHarmless()
{
    QWidget frame;
    SlowAdjustment::mayEnd = false;
    auto* const window =
        new DocumentWindow(TestDocuments::Opened(TestPictures::Grey(Width, Height, 100)), &frame);
    window->setAttribute(Qt::WA_DeleteOnClose);
    frame.show();
    const AdjustmentEntry entry = SlowAdjustment::Entry();
    window->RunAdjustment(entry);
    const QPointer<AdjustmentSession> session = window->Session();
    QTRY_COMPARE_WITH_TIMEOUT(SlowAdjustment::jobsBegun.load(), 1, PatienceMs);
    const QPointer<DocumentWindow> living = window;
    window->close();
    QTRY_VERIFY_WITH_TIMEOUT(!living, PatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!session, PatienceMs);
}

QTEST_MAIN(TestAdjustmentSession)
#include "tst_AdjustmentSession.moc"
