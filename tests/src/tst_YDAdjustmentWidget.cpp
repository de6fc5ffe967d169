#include "YDTaskWidget.h"
#include "core/KVApplication.h"
#include "gui/KVDocumentView.h"
#include "gui/YDMdiArea.h"
#include "gui/YDOperationProgressDlg.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QMainWindow>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <atomic>

namespace {

constexpr int PatienceMs = 10000;
constexpr int NeverMs = 1000000;
/// Longer than the delay in which changes are gathered, so that a job that would start has started.
constexpr int QuietMs = 150;

/// What a job of the test waits for, and what it tells.
struct Gate
{
    std::atomic<int> jobsBegun{0};
    std::atomic<int> jobsEnded{0};
    std::atomic<bool> open{true};
};

/// An adjustment that computes no pixels.
class IdleWidget : public YDAdjustmentWidget
{
public:
    IdleWidget() : YDAdjustmentWidget(true, nullptr, Qt::WindowFlags()) {}
    void Reset() override {}
    void StartJobWatching(JobWatcher*) override {}
};

/// Translates every text into its context and itself.
class ContextTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return QStringLiteral("%1/%2").arg(QLatin1String(context), QLatin1String(text));
    }
    bool isEmpty() const override { return false; }
};

/// An adjustment whose job fills the picture with a value once the gate opens, or stops when aborted.
class FillWidget : public YDTaskWidget
{
public:
    FillWidget(bool isDialog, Gate& gate, QWidget* parent = nullptr)
        : YDTaskWidget(isDialog, parent, Qt::WindowFlags()), m_gate(gate)
    {
        GetUIContent()->setWindowTitle(QStringLiteral("Fill"));
    }

    void SetFill(quint8 value)
    {
        m_fill = value;
        emit DataChanged();
    }
    quint8 Fill() const { return m_fill; }
    void ShowRange(int minimum, int maximum, int value)
    {
        emit ProgressRangeChanged(minimum, maximum);
        emit ProgressValueChanged(value);
    }

    void Reset() override { SetFill(0); }
    operations::Task MakeTask() const override
    {
        return operations::Task(
            [fill = m_fill, &gate = m_gate](const YDAdjustmentJob& job) { return Run(job, fill, gate); });
    }

    using YDAdjustmentWidget::DataChangedFlag;
    using YDAdjustmentWidget::GetUIContent;
    using YDAdjustmentWidget::SetGrooveGradient;

private:
    static bool IsAborted(const YDAdjustmentJob& job) { return job.abort && job.abort->load(); }

    static RGBA32iImage Run(const YDAdjustmentJob& job, quint8 fill, Gate& gate)
    {
        ++gate.jobsBegun;
        while (!gate.open && !IsAborted(job))
            QThread::yieldCurrentThread();
        if (!IsAborted(job))
            for (int y = 0; y < job.image.Height(); ++y)
                std::fill_n(job.image.Row(y), job.image.Width(), YDRGBA32i(fill, fill, fill, 255));
        ++gate.jobsEnded;
        return job.image;
    }

    Gate& m_gate;
    quint8 m_fill = 0;
};

void GiveImage(YDAdjustmentWidget& widget, int width = 20, int height = 10)
{
    widget.SetImage(RGBA32iImage(width, height), RGBA32iImage(), QPoint(), QRect());
}

quint8 Shown(const YDAdjustmentWidget& widget)
{
    const RGBA32iImage image = widget.AdjustedImage();
    return image.IsEmpty() ? 0 : image.Row(0)[0].g;
}

/// Starts a job that does not end by itself, waits for it, and calls `act` once the wait dialog shows.
template <class Act>
void ActInTheWaitDialog(FillWidget& widget, Act act)
{
    KVApplication::SetProgressTimeout(1);
    GiveImage(widget);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    auto* const poll = new QTimer(&widget);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act] {
        auto* const dialog = qobject_cast<YDOperationProgressDlg*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        poll->stop();
        act(*dialog);
    });
    poll->start(1);
}

bool IsIdle(const Gate& gate) { return gate.jobsBegun == gate.jobsEnded; }

} // namespace

class TestYDAdjustmentWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void TheDialogHasItsFrame();
    void ThePanelIsItsContentAlone();
    void ButtonsSpeakForTheDialog();
    void TheNameIsTheTitleOfTheContent();
    void HandingInAnImageStartsAPreview();
    void TheJobIsUnderWayWhenTheSourceIsAnnounced();
    void AnAdjustmentWithoutAJobIsNeverBusy();
    void APanelNeverStartsAJob();
    void AnEmptyImageNeverStartsAJob_data();
    void AnEmptyImageNeverStartsAJob();
    void TenChangesWithinTheDelayStartOneJob();
    void TheSourceIsNeverWrittenTo();
    void AChangeDuringAJobHidesItsResultAndIsFollowedByOneJob();
    void AnotherImageDuringAJobHidesItsResult();
    void WhileCancelledNoJobStarts();
    void ClearingEndsCancelling();
    void ClearingDuringAJobHidesItsResult();
    void ClearingResetsAndAnnouncesTheSource();
    void ConversionIsNotStoppedByALeftOverAbort();
    void WaitingWhileIdleChangesNothing();
    void WaitingIsAnsweredOnce();
    void AJobThatEndsInTimeNeedsNoDialog();
    void ALongJobShowsADialogUntilItEnds();
    void AbortingTheDialogCancels();
    void CancellingWhileWaitingHidesTheResult();
    void AChangeWhileTheDialogShowsIsApplied();
    void AChangeWhileTheTimeoutRunsStartsNothing();
    void TheDialogShowsTheProgressOverTheMainWindow();
    void AnythingMayHappenWhileTheDialogShows_data();
    void AnythingMayHappenWhileTheDialogShows();
    void AJobThatFollowsIsWaitedForInADialogToo();
    void AMainWindowThatGoesAwayAbortsTheWait();
    void AWidgetMayBeDestroyedByItsOwnAnswer_data();
    void AWidgetMayBeDestroyedByItsOwnAnswer();
    void FlushingStartsAPendingChangeAtOnce();
    void QuickJobsLeaveTheStripAlone();
    void TheStripStaysAsItIsAfterAQuickJob();
    void LongJobsRevealTheStrip();
    void TheEndOfAJobIsAnnouncedAsFullProgress();
    void ProgressReachesTheBar();
    void TheSettingGovernsTheSplitter_data();
    void TheSettingGovernsTheSplitter();
    void TheToggleGovernsTheViewUntilItIsForgotten();
    void AViewThatIsGoneIsForgotten();
    void GroovesAreColouredByTheirStops();
    void DestroyingAWidgetEndsItsJob();
    void DestroyingAWidgetEndsItsWait();
    void DestroyingAWidgetEndsItsDialog();
    void TwoWidgetsPreviewAtOnce();
    void TheFrameIsTranslatedInItsOwnContext();
};

void TestYDAdjustmentWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDAdjustmentWidget"));
}

void TestYDAdjustmentWidget::init()
{
    KVApplication::SetProgressTimeout(NeverMs);
    KVApplication::SetUserValue(KVApplication::GetName(KVApplication::HidePreviewSlider), false);
}

void TestYDAdjustmentWidget::TheDialogHasItsFrame()
{
    Gate gate;
    FillWidget widget(true, gate);
    QCOMPARE(widget.windowTitle(), QStringLiteral("Form"));
    QCOMPARE(widget.size(), QSize(255, 96));

    const auto* const outer = widget.findChild<QGridLayout*>(QStringLiteral("gridLayout_2"));
    QVERIFY(outer);
    QCOMPARE(widget.layout(), outer);
    QCOMPARE(outer->spacing(), 0);
    QCOMPARE(outer->contentsMargins(), QMargins());
    const auto* const inner = widget.findChild<QGridLayout*>(QStringLiteral("gridLayout"));
    QVERIFY(inner);
    QCOMPARE(outer->itemAtPosition(1, 0)->layout(), inner);
    QCOMPARE(inner->contentsMargins(), QMargins(9, 9, 9, 9));

    const auto* const bar = widget.findChild<QProgressBar*>(QStringLiteral("FILTERPROGRESS"));
    QVERIFY(bar);
    QCOMPARE(outer->itemAtPosition(0, 0)->widget(), bar);
    QCOMPARE(bar->maximumSize(), QSize(16777215, 2));
    QVERIFY(!bar->isTextVisible());
    QVERIFY(!bar->isEnabled());
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 0);
    QCOMPARE(bar->value(), 0);

    auto* const content = widget.findChild<QWidget*>(QStringLiteral("m_pContent"));
    QCOMPARE(widget.GetUIContent(), content);
    QCOMPARE(inner->itemAtPosition(0, 0)->widget(), content);
    QCOMPARE(inner->itemAtPosition(0, 1)->widget(), content);
    QCOMPARE(content->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
    QCOMPARE(content->sizePolicy().horizontalStretch(), 0);
    QCOMPARE(content->sizePolicy().verticalStretch(), 0);

    const QSpacerItem* const spacer = inner->itemAtPosition(1, 0)->spacerItem();
    QVERIFY(spacer);
    QCOMPARE(spacer->sizeHint(), QSize(40, 20));
    QCOMPARE(spacer->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum));

    const auto* const toggle = widget.findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    QCOMPARE(inner->itemAtPosition(1, 1)->widget(), toggle);
    QCOMPARE(toggle->text(), QStringLiteral("Hide preview slider"));
    QCOMPARE(toggle->minimumSize(), QSize(20, 40));

    const auto* const buttons = widget.findChild<QDialogButtonBox*>(QStringLiteral("m_pButtons"));
    QCOMPARE(inner->itemAtPosition(2, 0)->widget(), buttons);
    QCOMPARE(inner->itemAtPosition(2, 1)->widget(), buttons);
    QCOMPARE(buttons->standardButtons(),
             QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Reset);
}

void TestYDAdjustmentWidget::ThePanelIsItsContentAlone()
{
    Gate gate;
    FillWidget widget(false, gate);
    QCOMPARE(widget.GetUIContent(), &widget);
    QVERIFY(widget.findChildren<QWidget*>().isEmpty());
    QVERIFY(widget.SourceImage().IsEmpty());
    QVERIFY(widget.AdjustedImage().IsEmpty());
    QVERIFY(!widget.IsCancelProcessing());
}

void TestYDAdjustmentWidget::ButtonsSpeakForTheDialog()
{
    Gate gate;
    FillWidget widget(true, gate);
    QSignalSpy ok(&widget, &YDAdjustmentWidget::Ok);
    QSignalSpy cancel(&widget, &YDAdjustmentWidget::Cancel);
    const auto* const buttons = widget.findChild<QDialogButtonBox*>(QStringLiteral("m_pButtons"));
    buttons->button(QDialogButtonBox::Ok)->click();
    QCOMPARE(ok.count(), 1);
    QCOMPARE(cancel.count(), 0);
    buttons->button(QDialogButtonBox::Cancel)->click();
    QCOMPARE(ok.count(), 1);
    QCOMPARE(cancel.count(), 1);
    widget.SetFill(7);
    buttons->button(QDialogButtonBox::Reset)->click();
    QCOMPARE(widget.Fill(), quint8(0));
    widget.SetFill(7);
    widget.OnReset();
    QCOMPARE(widget.Fill(), quint8(0));
}

void TestYDAdjustmentWidget::TheNameIsTheTitleOfTheContent()
{
    Gate gate;
    FillWidget dialog(true, gate);
    FillWidget panel(false, gate);
    QCOMPARE(dialog.GetWidgetName(), QStringLiteral("Fill"));
    QCOMPARE(panel.GetWidgetName(), QStringLiteral("Fill"));
    panel.setWindowTitle(QString());
    QVERIFY(panel.GetWidgetName().isEmpty());
}

void TestYDAdjustmentWidget::HandingInAnImageStartsAPreview()
{
    Gate gate;
    FillWidget widget(true, gate);
    QSignalSpy source(&widget, &YDAdjustmentWidget::SourceChanged);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    const RGBA32iImage image(20, 10);
    widget.SetImage(image, RGBA32iImage(), QPoint(1, 2), QRect());
    QCOMPARE(source.count(), 1);
    QVERIFY(widget.SourceImage().SharesPixelsWith(image));
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(widget.AdjustedImage().Width(), 20);
    QCOMPARE(widget.AdjustedImage().Height(), 10);
}

void TestYDAdjustmentWidget::TheJobIsUnderWayWhenTheSourceIsAnnounced()
{
    Gate gate;
    FillWidget widget(true, gate);
    bool isUnderWay = false;
    connect(&widget, &YDAdjustmentWidget::SourceChanged, this,
            [&] { isUnderWay = widget.findChild<QFutureWatcherBase*>() != nullptr; });
    GiveImage(widget);
    QVERIFY(isUnderWay);
}

void TestYDAdjustmentWidget::AnAdjustmentWithoutAJobIsNeverBusy()
{
    IdleWidget widget;
    KVApplication::SetProgressTimeout(1);
    GiveImage(widget);
    QVERIFY(widget.WaitForProcessingFinished(false));
    QTest::qWait(QuietMs);
    QVERIFY(!widget.findChild<QProgressBar*>(QStringLiteral("FILTERPROGRESS"))->isEnabled());
}

void TestYDAdjustmentWidget::APanelNeverStartsAJob()
{
    Gate gate;
    FillWidget widget(false, gate);
    GiveImage(widget);
    widget.SetFill(5);
    QTest::qWait(QuietMs);
    QCOMPARE(gate.jobsBegun.load(), 0);
    QVERIFY(widget.AdjustedImage().IsEmpty());
}

void TestYDAdjustmentWidget::AnEmptyImageNeverStartsAJob_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("no width") << 0 << 10;
    QTest::newRow("no height") << 10 << 0;
    QTest::newRow("neither") << 0 << 0;
}

void TestYDAdjustmentWidget::AnEmptyImageNeverStartsAJob()
{
    QFETCH(int, width);
    QFETCH(int, height);
    Gate gate;
    FillWidget widget(true, gate);
    QSignalSpy source(&widget, &YDAdjustmentWidget::SourceChanged);
    GiveImage(widget, width, height);
    QCOMPARE(source.count(), 1);
    widget.SetFill(5);
    QTest::qWait(QuietMs);
    QCOMPARE(gate.jobsBegun.load(), 0);
}

void TestYDAdjustmentWidget::TenChangesWithinTheDelayStartOneJob()
{
    Gate gate;
    FillWidget widget(true, gate);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    for (quint8 value = 1; value <= 10; ++value)
        widget.SetFill(value);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 2);
    QCOMPARE(gate.jobsBegun.load(), 2);
    QCOMPARE(Shown(widget), quint8(10));
}

void TestYDAdjustmentWidget::TheSourceIsNeverWrittenTo()
{
    Gate gate;
    FillWidget widget(true, gate);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    widget.SetFill(9);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(widget), quint8(9), PatienceMs);
    QVERIFY(widget.SourceImage().Row(0)[0] == YDRGBA32i());
    QVERIFY(!widget.SourceImage().SharesPixelsWith(widget.AdjustedImage()));
}

void TestYDAdjustmentWidget::AChangeDuringAJobHidesItsResultAndIsFollowedByOneJob()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QList<quint8> shown;
    connect(&widget, &YDAdjustmentWidget::ImageReady, this, [&] { shown.append(Shown(widget)); });
    widget.SetFill(1);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 1, PatienceMs);
    widget.SetFill(2);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 2, PatienceMs); // the first was aborted and has ended
    widget.SetFill(3);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 3, PatienceMs);
    gate.open = true;
    QTRY_COMPARE_WITH_TIMEOUT(shown.count(), 1, PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(shown, QList<quint8>{3});
    QCOMPARE(gate.jobsBegun.load(), 3);
}

void TestYDAdjustmentWidget::AnotherImageDuringAJobHidesItsResult()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget, 20, 10);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 1, PatienceMs);
    GiveImage(widget, 30, 15);
    gate.open = true;
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(widget.AdjustedImage().Width(), 30);
    QCOMPARE(gate.jobsBegun.load(), 2);
}

void TestYDAdjustmentWidget::WhileCancelledNoJobStarts()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 1, PatienceMs);
    widget.SetCancelProcessing(true);
    QVERIFY(widget.IsCancelProcessing());
    QTRY_VERIFY_WITH_TIMEOUT(IsIdle(gate), PatienceMs);
    gate.open = true;
    widget.SetFill(4);
    QTest::qWait(QuietMs);
    QCOMPARE(gate.jobsBegun.load(), 1);
    QCOMPARE(ready.count(), 0);
    widget.SetCancelProcessing(false);
    QTest::qWait(QuietMs);
    QCOMPARE(gate.jobsBegun.load(), 1); // clearing the flag alone starts nothing
    widget.SetFill(5);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(Shown(widget), quint8(5));
}

void TestYDAdjustmentWidget::ClearingEndsCancelling()
{
    Gate gate;
    FillWidget widget(true, gate);
    widget.CancelProcessing();
    QVERIFY(widget.IsCancelProcessing());
    widget.ClearData();
    QVERIFY(!widget.IsCancelProcessing());
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
}

void TestYDAdjustmentWidget::ClearingDuringAJobHidesItsResult()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 1, PatienceMs);
    widget.ClearData();
    gate.open = true;
    QTRY_VERIFY_WITH_TIMEOUT(IsIdle(gate), PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 0);
    QCOMPARE(gate.jobsBegun.load(), 1);
    QVERIFY(widget.SourceImage().IsEmpty());
    QVERIFY(widget.AdjustedImage().IsEmpty());
}

void TestYDAdjustmentWidget::ClearingResetsAndAnnouncesTheSource()
{
    Gate gate;
    FillWidget widget(true, gate);
    widget.SetFill(6);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(widget), quint8(6), PatienceMs);
    QSignalSpy source(&widget, &YDAdjustmentWidget::SourceChanged);
    widget.ClearData();
    QCOMPARE(source.count(), 1);
    QCOMPARE(widget.Fill(), quint8(0));
    QVERIFY(widget.SourceImage().IsEmpty());
    QVERIFY(widget.AdjustedImage().IsEmpty());
}

void TestYDAdjustmentWidget::ConversionIsNotStoppedByALeftOverAbort()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 1, PatienceMs);
    widget.SetCancelProcessing(true);
    QVERIFY(widget.DataChangedFlag().load());
    gate.open = true;
    widget.SetFill(8);
    RGBA32iImage image(20, 10);
    widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QCOMPARE(image.Row(9)[19].g, quint8(8));
}

void TestYDAdjustmentWidget::WaitingWhileIdleChangesNothing()
{
    Gate gate;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    QVERIFY(widget.WaitForProcessingFinished(false));
    QVERIFY(widget.WaitForProcessingFinished(true));
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!widget.IsCancelProcessing());
    QTest::qWait(QuietMs);
    QCOMPARE(finished.count(), 0);
}

void TestYDAdjustmentWidget::WaitingIsAnsweredOnce()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    GiveImage(widget);
    KVApplication::SetProgressTimeout(20);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    QVERIFY(QGuiApplication::overrideCursor());
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QVERIFY(widget.WaitForProcessingFinished(false));
    gate.open = true;
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(widget.WaitForProcessingFinished(false));
}

void TestYDAdjustmentWidget::AJobThatEndsInTimeNeedsNoDialog()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    KVApplication::SetProgressTimeout(300);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    gate.open = true;
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    bool dialogSeen = false;
    while (finished.isEmpty()) {
        dialogSeen = dialogSeen || QApplication::activeModalWidget();
        QTest::qWait(1);
    }
    QVERIFY(!dialogSeen);
    QCOMPARE(finished.first().first().toInt(), 1);
}

void TestYDAdjustmentWidget::ALongJobShowsADialogUntilItEnds()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    widget.SetFill(3);
    GiveImage(widget);
    KVApplication::SetProgressTimeout(1);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    QString label;
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [&] {
        const auto* const dialog = qobject_cast<YDOperationProgressDlg*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        const auto labels = dialog->findChildren<QLabel*>();
        for (const QLabel* const each : labels)
            label += each->text();
        QVERIFY(widget.WaitForProcessingFinished(false)); // somebody already waits
        QVERIFY(!QGuiApplication::overrideCursor());
        poll.stop();
        gate.open = true;
    });
    poll.start(1);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(label, QStringLiteral("Fill:"));
    QCOMPARE(finished.first().first().toInt(), 1);
    QCOMPARE(Shown(widget), quint8(3));
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!QApplication::activeModalWidget());
}

void TestYDAdjustmentWidget::AbortingTheDialogCancels()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    KVApplication::SetProgressTimeout(1);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [&] {
        if (auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            dialog->reject();
    });
    poll.start(1);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 0);
    QVERIFY(widget.IsCancelProcessing());
    QVERIFY(IsIdle(gate));
    QCOMPARE(ready.count(), 0);
    QVERIFY(!QGuiApplication::overrideCursor());
}

void TestYDAdjustmentWidget::CancellingWhileWaitingHidesTheResult()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    KVApplication::SetProgressTimeout(20);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    QVERIFY(widget.WaitForProcessingFinished(true));
    QVERIFY(widget.IsCancelProcessing());
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QCOMPARE(ready.count(), 0);
    QVERIFY(IsIdle(gate));
}

void TestYDAdjustmentWidget::AChangeWhileTheDialogShowsIsApplied()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 1, PatienceMs);
    KVApplication::SetProgressTimeout(1);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [&] {
        if (!QApplication::activeModalWidget())
            return;
        poll.stop();
        widget.SetFill(77);
        widget.FlushPendingChange();
        gate.open = true;
    });
    poll.start(1);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(widget), quint8(77), PatienceMs);
}

void TestYDAdjustmentWidget::AChangeWhileTheTimeoutRunsStartsNothing()
{
    constexpr int TimeoutMs = 300;
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 1, PatienceMs);
    KVApplication::SetProgressTimeout(TimeoutMs);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    widget.SetFill(9);
    QTest::qWait(QuietMs);
    QVERIFY(!widget.DataChangedFlag().load()); // the running job goes on
    widget.RestartProcessing();                // pending when the time-out ends
    gate.open = true;
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(gate.jobsBegun.load(), 1);
}

void TestYDAdjustmentWidget::TheDialogShowsTheProgressOverTheMainWindow()
{
    QMainWindow window;
    window.setCentralWidget(new YDMdiArea);
    window.show();
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    QList<int> shown;
    const QWidget* parent = nullptr;
    ActInTheWaitDialog(widget, [&](YDOperationProgressDlg& dialog) {
        const auto* const bar = dialog.findChild<QProgressBar*>();
        parent = dialog.parentWidget();
        shown << bar->minimum() << bar->maximum() << bar->value();
        widget.ShowRange(0, 300, 77);
        shown << bar->maximum() << bar->value();
        gate.open = true;
    });
    widget.ShowRange(5, 200, 42);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(shown, QList<int>({5, 200, 42, 300, 77}));
    QCOMPARE(parent, &window);
}

void TestYDAdjustmentWidget::AnythingMayHappenWhileTheDialogShows_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("shown"); ///< 0: nothing
    QTest::newRow("the data are cleared") << "clear" << 0;
    QTest::newRow("another image comes") << "image" << 4;
    QTest::newRow("the wait is cancelled") << "cancel" << 0;
}

void TestYDAdjustmentWidget::AnythingMayHappenWhileTheDialogShows()
{
    QFETCH(QString, what);
    QFETCH(int, shown);
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    widget.SetFill(4);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    ActInTheWaitDialog(widget, [&](YDOperationProgressDlg&) {
        if (what == QLatin1String("clear"))
            widget.ClearData();
        else if (what == QLatin1String("image"))
            GiveImage(widget, 40, 30);
        else
            QVERIFY(widget.WaitForProcessingFinished(true));
        gate.open = what == QLatin1String("image");
    });
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QCOMPARE(int(Shown(widget)), shown);
    QVERIFY(!QGuiApplication::overrideCursor());
    QTRY_VERIFY_WITH_TIMEOUT(IsIdle(gate), PatienceMs);
}

void TestYDAdjustmentWidget::AJobThatFollowsIsWaitedForInADialogToo()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    ActInTheWaitDialog(widget, [&](YDOperationProgressDlg&) {
        widget.SetFill(5);
        widget.FlushPendingChange();
    });
    // The first job ends by its abort; were the second waited for with the event loop at rest, this timer
    // could not open the gate for it.
    QTimer poll;
    connect(&poll, &QTimer::timeout, this,
            [&] { gate.open = gate.jobsBegun == 2 && QApplication::activeModalWidget(); });
    poll.start(1);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(int(Shown(widget)), 5);
    QCOMPARE(gate.jobsBegun.load(), 2);
}

void TestYDAdjustmentWidget::AMainWindowThatGoesAwayAbortsTheWait()
{
    QPointer<QMainWindow> window = new QMainWindow;
    window->setCentralWidget(new YDMdiArea);
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    ActInTheWaitDialog(widget, [&](YDOperationProgressDlg&) { delete window; });
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 0);
    QVERIFY(widget.IsCancelProcessing());
}

void TestYDAdjustmentWidget::AWidgetMayBeDestroyedByItsOwnAnswer_data()
{
    QTest::addColumn<bool>("inFinished");
    QTest::newRow("when the result arrives") << false;
    QTest::newRow("when the wait is answered") << true;
}

void TestYDAdjustmentWidget::AWidgetMayBeDestroyedByItsOwnAnswer()
{
    QFETCH(bool, inFinished);
    Gate gate;
    gate.open = false;
    const QPointer<FillWidget> widget = new FillWidget(true, gate);
    if (inFinished)
        connect(widget, &YDAdjustmentWidget::Finished, this, [&] { delete widget; });
    else
        connect(widget, &YDAdjustmentWidget::ImageReady, this, [&] { delete widget; });
    ActInTheWaitDialog(*widget, [&](YDOperationProgressDlg&) { gate.open = true; });
    QTRY_VERIFY_WITH_TIMEOUT(!widget, PatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), PatienceMs);
    QVERIFY(!QGuiApplication::overrideCursor());
}

void TestYDAdjustmentWidget::FlushingStartsAPendingChangeAtOnce()
{
    Gate gate;
    FillWidget widget(true, gate);
    widget.FlushPendingChange();
    QCOMPARE(gate.jobsBegun.load(), 0); // nothing was pending
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    widget.SetFill(12);
    QVERIFY(widget.WaitForProcessingFinished(false)); // by itself the change is not being computed yet
    widget.FlushPendingChange();
    KVApplication::SetProgressTimeout(1);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(Shown(widget), quint8(12));
    QTest::qWait(QuietMs);
    QCOMPARE(gate.jobsBegun.load(), 2);
}

void TestYDAdjustmentWidget::QuickJobsLeaveTheStripAlone()
{
    Gate gate;
    FillWidget widget(true, gate);
    const auto* const bar = widget.findChild<QProgressBar*>(QStringLiteral("FILTERPROGRESS"));
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    bool wasEnabled = bar->isEnabled();
    GiveImage(widget);
    for (quint8 value = 1; value <= 3; ++value) {
        widget.SetFill(value);
        QTRY_VERIFY_WITH_TIMEOUT((wasEnabled = wasEnabled || bar->isEnabled(), Shown(widget) == value),
                                 PatienceMs);
    }
    QVERIFY(!wasEnabled);
}

void TestYDAdjustmentWidget::TheStripStaysAsItIsAfterAQuickJob()
{
    constexpr int TimeoutMs = 200;
    Gate gate;
    FillWidget widget(true, gate);
    const auto* const bar = widget.findChild<QProgressBar*>(QStringLiteral("FILTERPROGRESS"));
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    KVApplication::SetProgressTimeout(TimeoutMs);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QTest::qWait(2 * TimeoutMs); // the time-out that the job has outrun
    QVERIFY(!bar->isEnabled());
}

void TestYDAdjustmentWidget::LongJobsRevealTheStrip()
{
    Gate gate;
    gate.open = false;
    FillWidget widget(true, gate);
    const auto* const bar = widget.findChild<QProgressBar*>(QStringLiteral("FILTERPROGRESS"));
    QVERIFY(!bar->isEnabled());
    KVApplication::SetProgressTimeout(20);
    GiveImage(widget);
    widget.ShowRange(0, 200, 40);
    QTRY_VERIFY_WITH_TIMEOUT(bar->isEnabled(), PatienceMs);
    QCOMPARE(bar->minimum(), 40);
    QCOMPARE(bar->maximum(), 200);
    gate.open = true;
    QTRY_VERIFY_WITH_TIMEOUT(!bar->isEnabled(), PatienceMs);
    QCOMPARE(bar->minimum(), 0);
}

void TestYDAdjustmentWidget::TheEndOfAJobIsAnnouncedAsFullProgress()
{
    Gate gate;
    FillWidget widget(true, gate);
    QSignalSpy range(&widget, &YDAdjustmentWidget::ProgressRangeChanged);
    QSignalSpy value(&widget, &YDAdjustmentWidget::ProgressValueChanged);
    GiveImage(widget);
    QTRY_COMPARE_WITH_TIMEOUT(range.count(), 1, PatienceMs);
    QCOMPARE(range.first(), QVariantList({0, 100}));
    QCOMPARE(value.first(), QVariantList({100}));
}

void TestYDAdjustmentWidget::ProgressReachesTheBar()
{
    Gate gate;
    FillWidget widget(true, gate);
    const auto* const bar = widget.findChild<QProgressBar*>(QStringLiteral("FILTERPROGRESS"));
    widget.ShowRange(0, 30, 12);
    QCOMPARE(bar->maximum(), 30);
    QCOMPARE(bar->value(), 12);
}

void TestYDAdjustmentWidget::TheSettingGovernsTheSplitter_data()
{
    QTest::addColumn<bool>("isDialog");
    QTest::addColumn<bool>("hidden");
    QTest::newRow("dialog, shown") << true << false;
    QTest::newRow("dialog, hidden") << true << true;
    QTest::newRow("panel, shown") << false << false;
    QTest::newRow("panel, hidden") << false << true;
}

void TestYDAdjustmentWidget::TheSettingGovernsTheSplitter()
{
    QFETCH(bool, isDialog);
    QFETCH(bool, hidden);
    KVApplication::SetUserValue(KVApplication::GetName(29), hidden);
    Gate gate;
    FillWidget widget(isDialog, gate);
    KVDocumentView view;
    view.HideSplitter(!hidden);
    widget.SetView(&view);
    QCOMPARE(view.IsSplitterHidden(), hidden);
    if (isDialog)
        QCOMPARE(widget.findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"))->isChecked(), hidden);
    widget.SetView(nullptr);
    QCOMPARE(view.IsSplitterHidden(), hidden);
}

void TestYDAdjustmentWidget::TheToggleGovernsTheViewUntilItIsForgotten()
{
    Gate gate;
    FillWidget widget(true, gate);
    auto* const toggle = widget.findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    KVDocumentView first;
    KVDocumentView second;
    widget.SetView(&first);
    toggle->setChecked(true);
    QVERIFY(first.IsSplitterHidden());
    widget.SetView(&second);
    QVERIFY(!toggle->isChecked()); // as the setting says
    toggle->setChecked(true);
    QVERIFY(second.IsSplitterHidden());
    toggle->setChecked(false);
    QVERIFY(!second.IsSplitterHidden());
    QVERIFY(first.IsSplitterHidden()); // no longer governed
    widget.SetView(nullptr);
    toggle->setChecked(true);
    QVERIFY(!second.IsSplitterHidden());
}

void TestYDAdjustmentWidget::AViewThatIsGoneIsForgotten()
{
    Gate gate;
    FillWidget widget(true, gate);
    {
        KVDocumentView view;
        widget.SetView(&view);
    }
    auto* const toggle = widget.findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"));
    toggle->setChecked(!toggle->isChecked());
    widget.SetView(nullptr);
    KVDocumentView other;
    widget.SetView(&other);
    toggle->setChecked(true);
    QVERIFY(other.IsSplitterHidden());
}

void TestYDAdjustmentWidget::GroovesAreColouredByTheirStops()
{
    QSlider slider(Qt::Horizontal);
    QLinearGradient gradient(0, 0, 1, 0);
    gradient.setColorAt(0.0, QColor(255, 0, 10));
    gradient.setColorAt(0.25, QColor(1, 2, 3, 4));
    gradient.setColorAt(1.0, QColor(0, 255, 0));
    FillWidget::SetGrooveGradient(&slider, gradient);
    QCOMPARE(slider.styleSheet(),
             QStringLiteral("QSlider::groove:horizontal{border: 0px solid;height: 4px;border-radius: 2px;"
                            "background: qlineargradient(x1: 0, y1: 0, x2: 1, y2: 0, stop: 0 rgb(255, 0, 10),"
                            "stop: 0.25 rgb(1, 2, 3),stop: 1 rgb(0, 255, 0),);}"));
}

void TestYDAdjustmentWidget::DestroyingAWidgetEndsItsJob()
{
    Gate gate;
    gate.open = false;
    {
        FillWidget widget(true, gate);
        GiveImage(widget);
        QTRY_COMPARE_WITH_TIMEOUT(gate.jobsBegun.load(), 1, PatienceMs);
    }
    QCOMPARE(gate.jobsEnded.load(), 1);
}

void TestYDAdjustmentWidget::DestroyingAWidgetEndsItsWait()
{
    Gate gate;
    gate.open = false;
    {
        FillWidget widget(true, gate);
        GiveImage(widget);
        QVERIFY(!widget.WaitForProcessingFinished(false));
        QVERIFY(QGuiApplication::overrideCursor());
    }
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(IsIdle(gate));
}

void TestYDAdjustmentWidget::DestroyingAWidgetEndsItsDialog()
{
    Gate gate;
    gate.open = false;
    QPointer<FillWidget> widget = new FillWidget(true, gate);
    GiveImage(*widget);
    KVApplication::SetProgressTimeout(1);
    QVERIFY(!widget->WaitForProcessingFinished(false));
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [&] {
        if (QApplication::activeModalWidget())
            delete widget;
    });
    poll.start(1);
    QTRY_VERIFY_WITH_TIMEOUT(!widget, PatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), PatienceMs);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(IsIdle(gate));
}

void TestYDAdjustmentWidget::TwoWidgetsPreviewAtOnce()
{
    Gate gate;
    FillWidget first(true, gate);
    FillWidget second(true, gate);
    first.SetFill(1);
    second.SetFill(2);
    GiveImage(first, 2000, 1500);
    GiveImage(second, 2000, 1500);
    for (quint8 value = 10; value < 30; value += 2) {
        first.SetFill(value);
        second.SetFill(value + 1);
        first.FlushPendingChange();
        second.FlushPendingChange();
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE_WITH_TIMEOUT(Shown(first), quint8(28), PatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(second), quint8(29), PatienceMs);
}

void TestYDAdjustmentWidget::TheFrameIsTranslatedInItsOwnContext()
{
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);
    Gate gate;
    const FillWidget widget(true, gate);
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(widget.findChild<QCheckBox*>(QStringLiteral("m_pPreviewSlider"))->text(),
             QStringLiteral("AdjustmentDialogBase/Hide preview slider"));
    QCOMPARE(widget.windowTitle(), QStringLiteral("AdjustmentDialogBase/Form"));
}

QTEST_MAIN(TestYDAdjustmentWidget)
#include "tst_YDAdjustmentWidget.moc"
