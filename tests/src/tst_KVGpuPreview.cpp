#include "GpuWidget.h"
#include "KVSelectiveColorsWidget.h"
#include "PanelKit.h"
#include "core/KVApplication.h"
#include "gpu/SelectiveColorsDevice.h"
#include "gpu/SelectiveColorsJob.h"
#include "gpu/SelectiveColorsService.h"
#include "gui/YDOperationProgressDlg.h"

#include <QApplication>
#include <QComboBox>
#include <QPointer>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr int PatienceMs = 20000;
/// Longer than the delay in which changes are gathered, so that a job that would start has started.
constexpr int QuietMs = 150;

/// What the device waits for, and what it tells.
struct Gate
{
    std::atomic<bool> isOpen{true};
    std::atomic<bool> isStubborn{false}; ///< the device does not look at the abort flag
    std::atomic<int> begun{0};
    std::atomic<int> ended{0};
    std::atomic<int> released{0};

    std::mutex mutex; // guards what follows
    std::vector<SelectiveColorsJob> jobs;
};

/// A device that fills the picture with the level that stands for the first percentage of the job: 1 for 1 %.
class GatedDevice : public SelectiveColorsDevice
{
public:
    explicit GatedDevice(Gate& gate) : m_gate(gate) {}

    QString Name() const override { return QStringLiteral("Gated"); }
    QString Prepare() override { return {}; }
    QString Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                   const std::atomic<bool>& abort) override
    {
        {
            const std::lock_guard<std::mutex> lock(m_gate.mutex);
            m_gate.jobs.push_back(job);
        }
        ++m_gate.begun;
        while (!m_gate.isOpen && (m_gate.isStubborn || !abort))
            QThread::yieldCurrentThread();
        const auto grey = quint8(qRound(job.rule.shift[0][0] * 100 / SelectiveColorsRule::FullShift));
        for (int y = 0; y < result.Height(); ++y)
            std::fill_n(result.Row(y), result.Width(), YDRGBA32i(grey, grey, grey, 255));
        ++m_gate.ended;
        return {};
    }
    void ReleasePictures() override { ++m_gate.released; }
    void Reset() override {}

private:
    Gate& m_gate;
};

/// The service that the running application has.
KVGpuService* theService = nullptr;

/// A service on a gated device, and a widget.
struct Bench
{
    explicit Bench(std::chrono::milliseconds patience = 1h)
        : service(std::make_unique<SelectiveColorsService>(std::make_unique<GatedDevice>(gate))),
          widget(std::make_unique<GpuWidget>(*service, patience))
    {
        theService = service.get();
    }
    ~Bench()
    {
        gate.isOpen = true;
        theService = nullptr;
    }

    /// Gives the widget a picture while the gate is closed, and waits until the device is at it.
    void BeginPreview(int percent)
    {
        gate.isOpen = false;
        widget->SetPercent(percent);
        widget->SetImage(RGBA32iImage(20, 10), {}, {}, {});
        QTRY_COMPARE_WITH_TIMEOUT(gate.begun.load(), 1, PatienceMs);
    }
    SelectiveColorsJob LastJob()
    {
        const std::lock_guard<std::mutex> lock(gate.mutex);
        return gate.jobs.back();
    }

    Gate gate;
    std::unique_ptr<SelectiveColorsService> service;
    std::unique_ptr<GpuWidget> widget;
};

YDOperationProgressDlg* WaitDialog()
{
    return qobject_cast<YDOperationProgressDlg*>(QApplication::activeModalWidget());
}

/// Calls `work` inside the event loop of the wait dialog once it is shown.
template <class Work>
void WhenWaitDialogShows(QObject* context, Work work)
{
    auto* const timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, work] {
        if (!WaitDialog())
            return;
        timer->stop();
        work();
    });
    timer->start(1);
}

} // namespace

/// Stands before the library's own, so that panels ask the test's service.
KVGpuService* KVGpuService::get_instance() { return theService; }

class TestKVGpuPreview : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void AnAnswerIsShown();
    void APictureIsHandedOverOnce();
    void ASelectionIsHandedOverWithoutACopy();
    void NoSelectionIsNoMask();
    void ASelectionOfNothingIsLeftToTheProcessor();
    void PixelsAreLetGoOfWithThePicture();
    void AnOlderAnswerIsNeverShown();
    void ChangesFasterThanTheDeviceEndWithTheLast();
    void CancellingEndsThePreviewAtOnce();
    void ClearingEndsThePreviewAtOnce();
    void DestroyingTheWidgetDoesNotWaitForTheDevice();
    void OkWaitsForTheAnswer();
    void AbortingTheWaitEndsThePreview();
    void AChangeDuringTheWaitIsWaitedFor();
    void AnAnswerThatTakesTooLongIsReplacedByTheProcessor();
    void OkDoesNotWaitForEver();
    void ADroppedRequestIsReplacedByTheProcessor();
    void TheProcessorGoesOnUntilTheNextFilter();
    void TheEndOfTheServiceIsNoEndOfPreviews();
    void AFilterEndsOnce();
    void ALaterFilterTakesThePlaceOfTheEarlier();
    void TheDestructorEndsTheFilter();
    void TwoWidgetsGetTheirOwnAnswers();
    void ThePanelAsksForWhatItShows();
    void HidingThePanelEndsItsFilterOnce();
    void ThePanelsEndDoesNotWaitForTheDevice();
    void OkInThePanelWaitsForTheDevice();
};

void TestKVGpuPreview::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_KVGpuPreview"));
}

void TestKVGpuPreview::init() { KVApplication::SetProgressTimeout(20); }

void TestKVGpuPreview::AnAnswerIsShown()
{
    Bench b;
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    b.widget->SetPercent(7);
    b.widget->SetImage(RGBA32iImage(20, 10), {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(Shown(*b.widget), 7);
    QVERIFY(b.widget->WaitForProcessingFinished(false)); // idle
}

void TestKVGpuPreview::APictureIsHandedOverOnce()
{
    Bench b;
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    const RGBA32iImage picture(20, 10);
    b.widget->SetImage(picture, {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    const SelectiveColorsJob first = b.LastJob();
    QCOMPARE(first.source.Row(0), static_cast<const YDRGBA32i*>(picture.Pixels()));
    QVERIFY(!first.isContentNew);
    b.widget->SetPercent(1);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(b.LastJob().source.IsSameAs(first.source));
    b.widget->SetImage(picture, {}, {}, {}); // it may have been written to meanwhile
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 3, PatienceMs);
    QVERIFY(!b.LastJob().source.IsSameAs(first.source));
    QCOMPARE(b.LastJob().source.Row(0), first.source.Row(0));
}

void TestKVGpuPreview::ASelectionIsHandedOverWithoutACopy()
{
    Bench b;
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    const RGBA32iImage mask(300, 30);
    b.widget->SetImage(RGBA32iImage(200, 100), mask, QPoint(40, 50), QRect(10, 5, 120, 20));
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    const SelectiveColorsJob job = b.LastJob();
    QCOMPARE(job.mask.Row(0), static_cast<const YDRGBA32i*>(mask.Row(5) + 10));
    QCOMPARE(job.mask.width, 120);
    QCOMPARE(job.mask.height, 20);
    QCOMPARE(int(job.mask.rowLength), mask.RowLength());
    QCOMPARE(int(job.maskX), 50); // the rectangle's corner moved by the offset
    QCOMPARE(int(job.maskY), 55);
}

void TestKVGpuPreview::NoSelectionIsNoMask()
{
    Bench b;
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    b.widget->SetImage(RGBA32iImage(200, 100), RGBA32iImage(30, 30), QPoint(40, 50), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(!b.LastJob().HasMask());
}

void TestKVGpuPreview::ASelectionOfNothingIsLeftToTheProcessor()
{
    Bench b;
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    b.widget->SetImage(RGBA32iImage(20, 10), RGBA32iImage(5, 5), QPoint(100, 0), QRect(0, 0, 5, 5));
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(Shown(*b.widget), GreyOfProcessor);
    QCOMPARE(b.gate.begun.load(), 0);
}

void TestKVGpuPreview::PixelsAreLetGoOfWithThePicture()
{
    Bench b;
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    std::weak_ptr<const unsigned char> pixels;
    {
        const RGBA32iImage picture(20, 10);
        pixels = picture.SharedPixels();
        b.widget->SetImage(picture, {}, {}, {});
    }
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    {
        const std::lock_guard<std::mutex> lock(b.gate.mutex);
        b.gate.jobs.clear();
    }
    QVERIFY(!pixels.expired());
    b.widget->ClearData();
    b.widget->Preview().ForgetAllBut(0);
    QTRY_VERIFY_WITH_TIMEOUT(pixels.expired(), PatienceMs);
}

void TestKVGpuPreview::AnOlderAnswerIsNeverShown()
{
    Bench b;
    b.gate.isStubborn = true;
    b.BeginPreview(1);
    QList<int> shown;
    connect(b.widget.get(), &YDAdjustmentWidget::ImageReady, this, [&] { shown.append(Shown(*b.widget)); });
    b.widget->SetPercent(2);
    b.widget->FlushPendingChange();
    QTest::qWait(QuietMs); // the second request waits behind the first
    QCOMPARE(b.gate.begun.load(), 1);
    b.gate.isOpen = true;
    QTRY_COMPARE_WITH_TIMEOUT(shown, QList<int>{2}, PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(shown, QList<int>{2});
}

void TestKVGpuPreview::ChangesFasterThanTheDeviceEndWithTheLast()
{
    Bench b;
    b.gate.isStubborn = true;
    b.BeginPreview(1);
    for (int percent = 2; percent <= 60; ++percent) {
        b.widget->SetPercent(percent);
        b.widget->FlushPendingChange();
        QCoreApplication::processEvents();
    }
    b.gate.isOpen = true;
    QTRY_COMPARE_WITH_TIMEOUT(Shown(*b.widget), 60, PatienceMs);
    QVERIFY(b.gate.begun < 10); // what was overtaken was not computed
}

void TestKVGpuPreview::CancellingEndsThePreviewAtOnce()
{
    Bench b;
    b.gate.isStubborn = true;
    b.BeginPreview(1);
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    b.widget->CancelProcessing();
    QCoreApplication::processEvents();
    QVERIFY(b.widget->WaitForProcessingFinished(false)); // idle, while the device is still at it
    QCOMPARE(b.gate.ended.load(), 0);
    b.gate.isOpen = true;
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.ended.load(), 1, PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 0);
    b.widget->SetCancelProcessing(false);
    b.widget->SetPercent(3);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(*b.widget), 3, PatienceMs);
}

void TestKVGpuPreview::ClearingEndsThePreviewAtOnce()
{
    Bench b;
    b.gate.isStubborn = true;
    b.BeginPreview(1);
    b.widget->ClearData();
    QCoreApplication::processEvents();
    QVERIFY(b.widget->WaitForProcessingFinished(false));
    b.gate.isOpen = true;
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.ended.load(), 1, PatienceMs);
    QTest::qWait(QuietMs);
    QVERIFY(b.widget->AdjustedImage().IsEmpty());
}

void TestKVGpuPreview::DestroyingTheWidgetDoesNotWaitForTheDevice()
{
    Bench b;
    b.gate.isStubborn = true;
    b.BeginPreview(1);
    b.widget->Preview().BeginFilter(20, 10);
    b.widget.reset(); // would hang here
    QCOMPARE(b.gate.ended.load(), 0);
    b.gate.isOpen = true;
    QTRY_VERIFY_WITH_TIMEOUT(b.gate.released > 0, PatienceMs);
}

void TestKVGpuPreview::OkWaitsForTheAnswer()
{
    Bench b;
    b.BeginPreview(5);
    QSignalSpy finished(b.widget.get(), &YDAdjustmentWidget::Finished);
    QVERIFY(!b.widget->WaitForProcessingFinished(false));
    WhenWaitDialogShows(b.widget.get(), [&] { b.gate.isOpen = true; });
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QCOMPARE(Shown(*b.widget), 5);
}

void TestKVGpuPreview::AbortingTheWaitEndsThePreview()
{
    Bench b;
    b.gate.isStubborn = true;
    b.BeginPreview(5);
    QSignalSpy finished(b.widget.get(), &YDAdjustmentWidget::Finished);
    QVERIFY(!b.widget->WaitForProcessingFinished(false));
    WhenWaitDialogShows(b.widget.get(), [] { WaitDialog()->reject(); });
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 0);
    QVERIFY(b.widget->IsCancelProcessing());
    QCOMPARE(b.gate.ended.load(), 0);
    QVERIFY(!QApplication::overrideCursor());
}

void TestKVGpuPreview::AChangeDuringTheWaitIsWaitedFor()
{
    Bench b;
    b.BeginPreview(5);
    QSignalSpy finished(b.widget.get(), &YDAdjustmentWidget::Finished);
    QVERIFY(!b.widget->WaitForProcessingFinished(false));
    WhenWaitDialogShows(b.widget.get(), [&] {
        b.widget->SetPercent(6);
        b.widget->FlushPendingChange();
        b.gate.isOpen = true;
    });
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QCOMPARE(Shown(*b.widget), 6);
}

void TestKVGpuPreview::AnAnswerThatTakesTooLongIsReplacedByTheProcessor()
{
    Bench b(100ms);
    b.gate.isStubborn = true;
    b.BeginPreview(5);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(*b.widget), GreyOfProcessor, PatienceMs);
    QCOMPARE(b.gate.ended.load(), 0);
    b.gate.isOpen = true;
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.ended.load(), 1, PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(Shown(*b.widget), GreyOfProcessor);
}

void TestKVGpuPreview::OkDoesNotWaitForEver()
{
    Bench b(300ms);
    b.gate.isStubborn = true;
    b.BeginPreview(5);
    QSignalSpy finished(b.widget.get(), &YDAdjustmentWidget::Finished);
    QVERIFY(!b.widget->WaitForProcessingFinished(false));
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QCOMPARE(Shown(*b.widget), GreyOfProcessor);
    QCOMPARE(b.gate.ended.load(), 0);
}

void TestKVGpuPreview::ADroppedRequestIsReplacedByTheProcessor()
{
    Bench b;
    b.gate.isStubborn = true;
    b.BeginPreview(5);
    b.service->cancel(1);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(*b.widget), GreyOfProcessor, PatienceMs);
}

void TestKVGpuPreview::TheProcessorGoesOnUntilTheNextFilter()
{
    Bench b;
    b.gate.isStubborn = true;
    b.BeginPreview(5);
    b.service->cancel(1);
    b.gate.isOpen = true;
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    b.widget->SetPercent(6);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QCOMPARE(Shown(*b.widget), GreyOfProcessor);
    QCOMPARE(b.gate.begun.load(), 1);
    b.widget->Preview().BeginFilter(20, 10);
    b.widget->SetPercent(7);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 3, PatienceMs);
    QCOMPARE(Shown(*b.widget), 7);
}

void TestKVGpuPreview::TheEndOfTheServiceIsNoEndOfPreviews()
{
    Bench b;
    b.widget->Preview().BeginFilter(20, 10);
    b.BeginPreview(5);
    b.service.reset();
    QTRY_COMPARE_WITH_TIMEOUT(Shown(*b.widget), GreyOfProcessor, PatienceMs);
    b.widget->Preview().EndFilter();
    b.widget->Preview().BeginFilter(20, 10);
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    b.widget->SetPercent(6);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
}

void TestKVGpuPreview::AFilterEndsOnce()
{
    Bench b;
    b.service->begin_filter(1, 1); // of somebody else
    b.widget->Preview().EndFilter();
    b.widget->Preview().BeginFilter(20, 10);
    b.widget->Preview().EndFilter();
    b.widget->Preview().EndFilter();
    QSignalSpy ready(b.widget.get(), &YDAdjustmentWidget::ImageReady);
    b.widget->SetImage(RGBA32iImage(20, 10), {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(b.gate.released.load(), 0); // the other's filter goes on
    b.service->end_filter();
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.released.load(), 1, PatienceMs);
}

void TestKVGpuPreview::ALaterFilterTakesThePlaceOfTheEarlier()
{
    Bench b;
    b.widget->Preview().BeginFilter(20, 10);
    b.widget->Preview().BeginFilter(30, 10);
    QTest::qWait(QuietMs);
    QCOMPARE(b.gate.released.load(), 0);
    b.widget->Preview().EndFilter();
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.released.load(), 1, PatienceMs);
}

void TestKVGpuPreview::TheDestructorEndsTheFilter()
{
    Bench b;
    b.widget->Preview().BeginFilter(20, 10);
    b.widget.reset();
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.released.load(), 1, PatienceMs);
}

void TestKVGpuPreview::TwoWidgetsGetTheirOwnAnswers()
{
    Bench b;
    GpuWidget other(*b.service);
    other.SetPercent(50);
    b.widget->SetPercent(10);
    b.widget->SetImage(RGBA32iImage(20, 10), {}, {}, {});
    other.SetImage(RGBA32iImage(20, 10), {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(Shown(*b.widget), 10, PatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(other), 50, PatienceMs);
    b.widget->SetPercent(11);
    b.widget->FlushPendingChange();
    other.SetPercent(51);
    other.FlushPendingChange();
    QTRY_COMPARE_WITH_TIMEOUT(Shown(*b.widget), 11, PatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(other), 51, PatienceMs);
}

void TestKVGpuPreview::ThePanelAsksForWhatItShows()
{
    Bench b;
    KVSelectiveColorsWidget panel(true, nullptr, Qt::WindowFlags());
    SelectiveParamsList params;
    for (int i = 0; i < params.targets.size(); ++i)
        params.targets[i] = {float(i), float(2 * i), float(3 * i), float(-i)};
    params.mode = Mode::Absolute;
    panel.SetValue(params);
    QSignalSpy ready(&panel, &YDAdjustmentWidget::ImageReady);
    panel.SetImage(RGBA32iImage(20, 10), {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    const SelectiveColorsRule expected(params.targets, params.mode);
    const SelectiveColorsJob job = b.LastJob();
    QVERIFY(!job.rule.relative);
    for (int range = 0; range < SelectiveParamsList::Ranges; ++range)
        for (int ink = 0; ink < SelectiveColorsRule::Inks; ++ink)
            QCOMPARE(job.rule.shift[range][ink], expected.shift[range][ink]);
    QCOMPARE(job.source.width, 20);
    QCOMPARE(job.source.height, 10);
    PanelKit::Child<QComboBox>(panel, "m_pColors")->setCurrentIndex(3);
    QTest::qWait(QuietMs);
    QCOMPARE(b.gate.begun.load(), 1);
}

void TestKVGpuPreview::HidingThePanelEndsItsFilterOnce()
{
    Bench b;
    b.service->begin_filter(1, 1); // of somebody else
    KVSelectiveColorsWidget panel(true, nullptr, Qt::WindowFlags());
    panel.show();
    panel.SetupActivation(20, 10);
    panel.hide();
    panel.hide();
    panel.show();
    panel.hide(); // not activated again
    QSignalSpy ready(&panel, &YDAdjustmentWidget::ImageReady);
    panel.SetImage(RGBA32iImage(20, 10), {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(b.gate.released.load(), 0); // the other's filter goes on
    panel.show();
    panel.SetupActivation(20, 10);
    b.service->end_filter();
    QTest::qWait(QuietMs);
    QCOMPARE(b.gate.released.load(), 0); // the panel's does now
    panel.hide();
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.released.load(), 1, PatienceMs);
}

void TestKVGpuPreview::ThePanelsEndDoesNotWaitForTheDevice()
{
    Bench b;
    b.gate.isStubborn = true;
    b.gate.isOpen = false;
    auto panel = std::make_unique<KVSelectiveColorsWidget>(true, nullptr, Qt::WindowFlags());
    panel->SetupActivation(20, 10);
    panel->show();
    panel->SetImage(RGBA32iImage(20, 10), {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.begun.load(), 1, PatienceMs);
    QVERIFY(!panel->WaitForProcessingFinished(false));
    panel.reset(); // would hang here
    QCOMPARE(b.gate.ended.load(), 0);
    QVERIFY(!QApplication::overrideCursor());
    b.gate.isOpen = true;
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.released.load(), 1, PatienceMs);
}

void TestKVGpuPreview::OkInThePanelWaitsForTheDevice()
{
    Bench b;
    b.gate.isStubborn = true;
    b.gate.isOpen = false;
    KVSelectiveColorsWidget panel(true, nullptr, Qt::WindowFlags());
    auto* const cyan = PanelKit::Child<QSpinBox>(panel, "m_pCyan");
    cyan->setValue(30);
    panel.SetImage(RGBA32iImage(20, 10), {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(b.gate.begun.load(), 1, PatienceMs);
    cyan->setValue(40); // the first answer will be too old
    panel.FlushPendingChange();
    QSignalSpy finished(&panel, &YDAdjustmentWidget::Finished);
    QVERIFY(!panel.WaitForProcessingFinished(false));
    WhenWaitDialogShows(&panel, [&] { b.gate.isOpen = true; });
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QCOMPARE(Shown(panel), 40);
}

QTEST_MAIN(TestKVGpuPreview)
#include "tst_KVGpuPreview.moc"
