#include "GpuWidget.h"
#include "KVSelectiveColorsWidget.h"
#include "PanelKit.h"
#include "core/KVApplication.h"
#include "gpu/KVGpuService.h"

#include <QApplication>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr int PatienceMs = 20000;
/// Longer than the delay in which changes are gathered, so that a job that would start has started.
constexpr int QuietMs = 150;

/// What a service was asked for.
struct Call
{
    const unsigned char* pixels;
    int width;
    int height;
    QList<SelectiveParams> params;
    Mode mode;
    const unsigned char* mask;
    int maskWidth;
    int maskHeight;
    int x;
    int y;
    bool isContentNew;
};

/// A service of a host's own, with no more than what a panel needs. It answers when it is told to.
class PlainService : public KVGpuService
{
public:
    void begin_filter(int width, int height) override { begun.append(QSize(width, height)); }
    void end_filter() override { ++ended; }
    void process_selective_color(const unsigned char* pixels, int width, int height,
                                 const QList<SelectiveParams>& params, Mode mode, const unsigned char* mask,
                                 int maskWidth, int maskHeight, int x, int y, bool isContentNew) override
    {
        calls.push_back(
            {pixels, width, height, params, mode, mask, maskWidth, maskHeight, x, y, isContentNew});
    }

    /// Answers the oldest call that has no answer, with a picture of this level, after a last look at all
    /// that was handed over.
    void Answer(int grey)
    {
        const Call& call = calls.at(answered++);
        const auto last = std::size_t(call.height - 1) * RGBA32iImage::RowLengthOf(call.width) * 4;
        seen += call.pixels[last];
        if (call.mask)
            seen += call.mask[0];
        emit finished(TestPictures::Grey(call.width, call.height, grey));
    }

    QList<QSize> begun;
    int ended = 0;
    std::vector<Call> calls;
    std::size_t answered = 0;
    unsigned seen = 0;
};

/// The service that the running application has.
KVGpuService* theService = nullptr;

struct Bench
{
    Bench() { theService = service.get(); }
    ~Bench() { theService = nullptr; }

    int Calls() const { return int(service->calls.size()); }

    std::unique_ptr<PlainService> service = std::make_unique<PlainService>();
};

std::unique_ptr<KVSelectiveColorsWidget> Panel()
{
    return std::make_unique<KVSelectiveColorsWidget>(true, nullptr, Qt::WindowFlags());
}

/// Has `widget` ask for a preview of a picture of its own, whose pixels are watched.
std::weak_ptr<const unsigned char> ShowPicture(YDAdjustmentWidget& widget)
{
    const RGBA32iImage picture(20, 10);
    widget.SetImage(picture, {}, {}, {});
    return picture.SharedPixels();
}

} // namespace

/// Stands before the library's own, so that panels ask the test's service.
KVGpuService* KVGpuService::get_instance() { return theService; }

class TestLendToGpu : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void ThePanelHandsOverAllOfTheMask();
    void NoSelectionIsNoMask();
    void ASelectionWithoutAMaskIsLeftToTheProcessor();
    void ThePanelsFilterIsBegunAndEndedAsItStands();
    void AnAnswerIsShown();
    void AnAnswerMayComeFromAnotherThread();
    void AChangeIsAskedForAfterTheAnswer();
    void ASecondRequestTakesThePlaceOfTheFirst();
    void ACancelledPreviewEndsWithTheAnswer();
    void ACancelledPreviewEndsWithoutAnAnswer();
    void AnAnswerThatTakesTooLongIsReplacedByTheProcessor();
    void OkDoesNotWaitForEver();
    void TheEndOfTheServiceIsNoEndOfPreviews();
    void ThePixelsOutliveTheWidgetUntilTheAnswer();
    void ThePixelsOutliveAnotherPictureUntilTheAnswer();
    void EachAnswerEndsOneLoan();
    void TheEndOfTheServiceEndsAllLoans();
    void AServiceThatOwesManyAnswersIsNotAsked();
};

void TestLendToGpu::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_LendToGpu"));
}

void TestLendToGpu::init() { KVApplication::SetProgressTimeout(20); }

void TestLendToGpu::ThePanelHandsOverAllOfTheMask()
{
    const Bench b;
    const auto panel = Panel();
    SelectiveParamsList params;
    for (int i = 0; i < params.targets.size(); ++i)
        params.targets[i] = {float(i), float(2 * i), float(3 * i), float(-i)};
    params.mode = Mode::Absolute;
    panel->SetValue(params);
    const RGBA32iImage picture(200, 100);
    const RGBA32iImage mask(300, 30);
    panel->SetImage(picture, mask, QPoint(-40, 50), QRect(10, 5, 120, 20));
    QCOMPARE(b.Calls(), 1);
    const Call& call = b.service->calls[0];
    QCOMPARE(call.pixels, reinterpret_cast<const unsigned char*>(picture.Pixels()));
    QCOMPARE(call.width, 200);
    QCOMPARE(call.height, 100);
    QCOMPARE(call.params.size(), 9);
    for (int i = 0; i < call.params.size(); ++i)
        QVERIFY(call.params[i].cyan == float(i) && call.params[i].black == float(-i));
    QCOMPARE(call.mode, Mode::Absolute);
    QCOMPARE(call.mask, reinterpret_cast<const unsigned char*>(mask.Pixels()));
    QCOMPARE(call.maskWidth, 300);
    QCOMPARE(call.maskHeight, 30);
    QCOMPARE(call.x, -40);
    QCOMPARE(call.y, 50);
    QVERIFY(!call.isContentNew);
}

void TestLendToGpu::NoSelectionIsNoMask()
{
    const Bench b;
    const auto panel = Panel();
    panel->SetImage(RGBA32iImage(20, 10), RGBA32iImage(30, 30), QPoint(4, 5), QRect());
    QCOMPARE(b.Calls(), 1);
    const Call& call = b.service->calls[0];
    QVERIFY(!call.mask);
    QCOMPARE(call.maskWidth, 0);
    QCOMPARE(call.maskHeight, 0);
}

void TestLendToGpu::ASelectionWithoutAMaskIsLeftToTheProcessor()
{
    const Bench b;
    const auto panel = Panel();
    QSignalSpy ready(panel.get(), &YDAdjustmentWidget::ImageReady);
    panel->SetImage(RGBA32iImage(20, 10), {}, {}, QRect(0, 0, 5, 5));
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(b.Calls(), 0);
}

void TestLendToGpu::ThePanelsFilterIsBegunAndEndedAsItStands()
{
    const Bench b;
    const auto panel = Panel();
    panel->show();
    panel->SetupActivation(-3, 7);
    panel->SetupActivation(20, 10);
    QCOMPARE(b.service->begun, QList<QSize>({QSize(-3, 7), QSize(20, 10)}));
    QCOMPARE(b.service->ended, 0);
    panel->hide();
    panel->hide();
    QCOMPARE(b.service->ended, 1);
    panel->show();
    panel->hide(); // not activated again
    QCOMPARE(b.service->ended, 1);
}

void TestLendToGpu::AnAnswerIsShown()
{
    const Bench b;
    const auto panel = Panel();
    QSignalSpy ready(panel.get(), &YDAdjustmentWidget::ImageReady);
    ShowPicture(*panel);
    b.service->Answer(7);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(Shown(*panel), 7);
    QCoreApplication::processEvents();
    QVERIFY(panel->WaitForProcessingFinished(false)); // idle
    b.service->calls.push_back(b.service->calls[0]);  // of somebody else
    b.service->Answer(8);
    QTest::qWait(QuietMs);
    QCOMPARE(Shown(*panel), 7);
}

void TestLendToGpu::AnAnswerMayComeFromAnotherThread()
{
    const Bench b;
    const auto panel = Panel();
    QSignalSpy ready(panel.get(), &YDAdjustmentWidget::ImageReady);
    ShowPicture(*panel);
    std::thread([&b] { b.service->Answer(7); }).join();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(Shown(*panel), 7);
}

void TestLendToGpu::AChangeIsAskedForAfterTheAnswer()
{
    const Bench b;
    const auto panel = Panel();
    QSignalSpy ready(panel.get(), &YDAdjustmentWidget::ImageReady);
    ShowPicture(*panel);
    for (const int percent : {10, 20, 30}) {
        PanelKit::Child<QSpinBox>(*panel, "m_pCyan")->setValue(percent);
        panel->FlushPendingChange();
    }
    QTest::qWait(QuietMs);
    QCOMPARE(b.Calls(), 1);
    b.service->Answer(1);
    QTRY_COMPARE_WITH_TIMEOUT(b.Calls(), 2, PatienceMs);
    QCOMPARE(int(b.service->calls[1].params[0].cyan), 30);
    QCOMPARE(ready.count(), 0); // the first answer is too old
    b.service->Answer(2);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(Shown(*panel), 2);
}

void TestLendToGpu::ASecondRequestTakesThePlaceOfTheFirst()
{
    const Bench b;
    const auto panel = Panel();
    ShowPicture(*panel);
    YDAdjustmentWidget::JobWatcher second;
    YDAdjustmentWidget::JobWatcher third;
    panel->StartJobWatching(&second);
    panel->StartJobWatching(&third);
    QCOMPARE(b.Calls(), 3);
    QVERIFY(second.future().isFinished() && second.future().isCanceled());
    b.service->Answer(1);
    QTRY_VERIFY_WITH_TIMEOUT(third.isFinished(), PatienceMs);
    QCOMPARE(int(third.result().Row(0)[0].g), 1);
}

void TestLendToGpu::ACancelledPreviewEndsWithTheAnswer()
{
    const Bench b;
    const auto panel = Panel();
    QSignalSpy ready(panel.get(), &YDAdjustmentWidget::ImageReady);
    ShowPicture(*panel);
    panel->CancelProcessing();
    QTest::qWait(QuietMs);
    QVERIFY(panel->IsProcessing());
    b.service->Answer(1);
    QTRY_VERIFY_WITH_TIMEOUT(!panel->IsProcessing(), PatienceMs);
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 0);
    QCOMPARE(b.Calls(), 1);
}

void TestLendToGpu::ACancelledPreviewEndsWithoutAnAnswer()
{
    const Bench b;
    GpuWidget widget(*b.service, 200ms);
    ShowPicture(widget);
    widget.CancelProcessing();
    QTRY_VERIFY_WITH_TIMEOUT(!widget.IsProcessing(), PatienceMs);
    QVERIFY(widget.AdjustedImage().IsEmpty());
    widget.SetCancelProcessing(false);
    widget.StartProcessing();
    QTRY_COMPARE_WITH_TIMEOUT(Shown(widget), GreyOfProcessor, PatienceMs);
    QCOMPARE(b.Calls(), 1);
}

void TestLendToGpu::AnAnswerThatTakesTooLongIsReplacedByTheProcessor()
{
    const Bench b;
    GpuWidget widget(*b.service, 100ms);
    ShowPicture(widget);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(widget), GreyOfProcessor, PatienceMs);
    b.service->Answer(7);
    QTest::qWait(QuietMs);
    QCOMPARE(Shown(widget), GreyOfProcessor);
    widget.Preview().BeginFilter(20, 10);
    widget.StartProcessing();
    QCOMPARE(b.Calls(), 2);
    b.service->Answer(8);
    QTRY_COMPARE_WITH_TIMEOUT(Shown(widget), 8, PatienceMs);
}

void TestLendToGpu::OkDoesNotWaitForEver()
{
    const Bench b;
    GpuWidget widget(*b.service, 300ms);
    ShowPicture(widget);
    QSignalSpy finished(&widget, &YDAdjustmentWidget::Finished);
    QVERIFY(!widget.WaitForProcessingFinished(false));
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PatienceMs);
    QCOMPARE(finished.first().first().toInt(), 1);
    QCOMPARE(Shown(widget), GreyOfProcessor);
}

void TestLendToGpu::TheEndOfTheServiceIsNoEndOfPreviews()
{
    for (const bool isCancelled : {false, true}) {
        Bench b;
        GpuWidget widget(*b.service);
        widget.Preview().BeginFilter(20, 10);
        ShowPicture(widget);
        if (isCancelled)
            widget.CancelProcessing();
        b.service.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!widget.IsProcessing(), PatienceMs);
        QCOMPARE(Shown(widget), isCancelled ? -1 : GreyOfProcessor);
    }
}

void TestLendToGpu::ThePixelsOutliveTheWidgetUntilTheAnswer()
{
    const Bench b;
    std::weak_ptr<const unsigned char> picture;
    std::weak_ptr<const unsigned char> mask;
    {
        const auto panel = Panel();
        const RGBA32iImage pixels(200, 100);
        const RGBA32iImage coverage(50, 50);
        picture = pixels.SharedPixels();
        mask = coverage.SharedPixels();
        panel->SetImage(pixels, coverage, {}, QRect(0, 0, 50, 50));
    }
    QTest::qWait(QuietMs);
    QVERIFY(!picture.expired() && !mask.expired());
    b.service->Answer(1); // looks at both once more
    QTRY_VERIFY_WITH_TIMEOUT(picture.expired() && mask.expired(), PatienceMs);
}

void TestLendToGpu::ThePixelsOutliveAnotherPictureUntilTheAnswer()
{
    const Bench b;
    const auto panel = Panel();
    const auto first = ShowPicture(*panel);
    panel->ClearData();
    QTest::qWait(QuietMs);
    QVERIFY(!first.expired());
    b.service->Answer(1);
    QTRY_VERIFY_WITH_TIMEOUT(first.expired(), PatienceMs);
    QVERIFY(panel->AdjustedImage().IsEmpty());
}

void TestLendToGpu::EachAnswerEndsOneLoan()
{
    const Bench b;
    std::vector<std::weak_ptr<const unsigned char>> pictures;
    for (int i = 0; i < 3; ++i)
        pictures.push_back(ShowPicture(*Panel()));
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        b.service->Answer(1);
        QTRY_VERIFY_WITH_TIMEOUT(pictures[i].expired(), PatienceMs);
        for (std::size_t later = i + 1; later < pictures.size(); ++later)
            QVERIFY(!pictures[later].expired());
    }
}

void TestLendToGpu::TheEndOfTheServiceEndsAllLoans()
{
    Bench b;
    const auto first = ShowPicture(*Panel());
    const auto second = ShowPicture(*Panel());
    QVERIFY(!first.expired() && !second.expired());
    b.service.reset();
    QTRY_VERIFY_WITH_TIMEOUT(first.expired() && second.expired(), PatienceMs);
}

void TestLendToGpu::AServiceThatOwesManyAnswersIsNotAsked()
{
    constexpr int Most = 8;
    const Bench b;
    for (int i = 0; i < Most; ++i)
        ShowPicture(*Panel());
    QCOMPARE(b.Calls(), Most);
    const auto panel = Panel();
    QSignalSpy ready(panel.get(), &YDAdjustmentWidget::ImageReady);
    ShowPicture(*panel);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QCOMPARE(b.Calls(), Most);
    b.service->Answer(1);
    QTest::qWait(QuietMs);
    ShowPicture(*panel);
    QCOMPARE(b.Calls(), Most + 1);
}

QTEST_MAIN(TestLendToGpu)
#include "tst_LendToGpu.moc"
