#include "TestPictures.h"
#include "YDTaskWidget.h"

#include <QFutureInterface>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>

namespace {

constexpr int PatienceMs = 30000;

/// What tasks wait for, and what they tell. It outlives them.
struct Gate
{
    std::atomic<bool> isOpen{true};
    std::atomic<int> begun{0};
    std::atomic<int> ended{0};
};

operations::Task GreyTask(int grey, Gate& gate)
{
    return operations::Task([grey, &gate](const YDAdjustmentJob& job) -> operations::Outcome {
        ++gate.begun;
        while (!gate.isOpen && !(job.abort && job.abort->load()))
            QThread::yieldCurrentThread();
        const auto value = quint8(std::max(grey, 0));
        for (int y = 0; grey >= 0 && y < job.image.Height(); ++y)
            std::fill_n(job.image.Row(y), job.image.Width(), YDRGBA32i(value, value, value, 255));
        ++gate.ended;
        return {job.image, grey >= 0 ? QString() : QStringLiteral("There is no grey %1.").arg(grey)};
    });
}

/// Makes pictures grey, its own by one more than any other; there is no grey below 0. From 200 on it computes
/// its previews without a task.
class GreyWidget : public YDTaskWidget
{
public:
    explicit GreyWidget(Gate& gate, bool isDialog = true)
        : YDTaskWidget(isDialog, nullptr, Qt::WindowFlags()), m_gate(gate)
    {}

    void SetGrey(int grey)
    {
        m_grey = grey;
        emit DataChanged();
    }

    operations::Task MakeTask() const override { return GreyTask(m_grey, m_gate); }
    void Reset() override { SetGrey(0); }
    void StartJobWatching(JobWatcher* watcher) override
    {
        if (m_grey < 200) {
            YDTaskWidget::StartJobWatching(watcher);
            return;
        }
        ForgetProblem();
        QFutureInterface<RGBA32iImage> promise;
        promise.reportStarted();
        watcher->setFuture(promise.future());
        const RGBA32iImage none;
        promise.reportFinished(&none);
    }

protected:
    operations::Task MakeTaskForSource() const override
    {
        return GreyTask(m_grey < 0 ? m_grey : m_grey + 1, m_gate);
    }

private:
    Gate& m_gate;
    int m_grey = 0;
};

RGBA32iImage Source() { return TestPictures::Noise(20, 10); }

bool IsGrey(const RGBA32iImage& picture, int grey)
{
    return TestPictures::AreEqual(picture, TestPictures::Grey(20, 10, grey));
}

void GiveSource(YDAdjustmentWidget& widget, const RGBA32iImage& source = Source())
{
    widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
}

} // namespace

class TestYDTaskWidget : public QObject
{
    Q_OBJECT

private slots:
    void APreviewIsWhatTheTaskForTheSourceMakes();
    void APreviewLeavesTheSource();
    void AConversionChangesThePictureItself();
    void TheTaskForOthersIsAValueOfItsOwn();
    void TheTaskMayOutliveTheWidget();
    void AProblemComesWithThePreviewAndGoesWithTheNext();
    void AProblemOfAConversionIsToldAndLeavesThePicture();
    void TheProblemOfAnAbortedJobIsNotTold();
    void AJobWithoutATaskHasNoProblem();
    void AWidgetThatIsDestroyedEndsItsJob();
};

void TestYDTaskWidget::APreviewIsWhatTheTaskForTheSourceMakes()
{
    Gate gate;
    GreyWidget widget(gate);
    widget.SetGrey(40);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveSource(widget);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(IsGrey(widget.AdjustedImage(), 41));
    QCOMPARE(widget.Problem(), QString());
}

void TestYDTaskWidget::APreviewLeavesTheSource()
{
    Gate gate;
    GreyWidget widget(gate);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    const RGBA32iImage source = Source();
    GiveSource(widget, source);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(!widget.AdjustedImage().SharesPixelsWith(source));
    QVERIFY(TestPictures::AreEqual(source, Source()));
}

void TestYDTaskWidget::AConversionChangesThePictureItself()
{
    Gate gate;
    GreyWidget panel(gate, false);
    panel.SetGrey(40);
    RGBA32iImage picture = Source();
    const RGBA32iImage samePixels = picture;
    panel.ConvertImage(picture, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(IsGrey(samePixels, 41));
    QCOMPARE(panel.Problem(), QString());
}

void TestYDTaskWidget::TheTaskForOthersIsAValueOfItsOwn()
{
    Gate gate;
    GreyWidget widget(gate);
    widget.SetGrey(40);
    const operations::Task task = widget.MakeTask();
    widget.SetGrey(90);
    QVERIFY(IsGrey(task.ApplyToCopy(Source()).picture, 40));
}

void TestYDTaskWidget::TheTaskMayOutliveTheWidget()
{
    Gate gate;
    auto widget = std::make_unique<GreyWidget>(gate);
    widget->SetGrey(7);
    const operations::Task task = widget->MakeTask();
    widget.reset();
    QVERIFY(IsGrey(task.ApplyToCopy(Source()).picture, 7));
}

void TestYDTaskWidget::AProblemComesWithThePreviewAndGoesWithTheNext()
{
    Gate gate;
    GreyWidget widget(gate);
    widget.SetGrey(-3);
    QStringList problems;
    connect(&widget, &YDAdjustmentWidget::ImageReady, this, [&] { problems.append(widget.Problem()); });
    GiveSource(widget);
    QTRY_COMPARE_WITH_TIMEOUT(problems, (QStringList{"There is no grey -3."}), PatienceMs);
    QVERIFY(widget.AdjustedImage().IsEmpty());
    gate.isOpen = false;
    widget.SetGrey(3);
    QTRY_COMPARE_WITH_TIMEOUT(gate.begun.load(), 2, PatienceMs);
    QCOMPARE(widget.Problem(), QStringLiteral("There is no grey -3.")); // still that of what is shown
    gate.isOpen = true;
    QTRY_COMPARE_WITH_TIMEOUT(problems.size(), 2, PatienceMs);
    QCOMPARE(problems.last(), QString());
    QVERIFY(IsGrey(widget.AdjustedImage(), 4));
}

void TestYDTaskWidget::AProblemOfAConversionIsToldAndLeavesThePicture()
{
    Gate gate;
    GreyWidget panel(gate, false);
    panel.SetGrey(-1);
    RGBA32iImage picture = Source();
    panel.ConvertImage(picture, RGBA32iImage(), QPoint(), QRect());
    QCOMPARE(panel.Problem(), QStringLiteral("There is no grey -1."));
    QVERIFY(TestPictures::AreEqual(picture, Source()));
    panel.SetGrey(1);
    panel.ConvertImage(picture, RGBA32iImage(), QPoint(), QRect());
    QCOMPARE(panel.Problem(), QString());
}

void TestYDTaskWidget::TheProblemOfAnAbortedJobIsNotTold()
{
    Gate gate;
    gate.isOpen = false;
    GreyWidget widget(gate);
    widget.SetGrey(-3);
    QStringList problems;
    connect(&widget, &YDAdjustmentWidget::ImageReady, this, [&] { problems.append(widget.Problem()); });
    GiveSource(widget);
    QTRY_COMPARE_WITH_TIMEOUT(gate.begun.load(), 1, PatienceMs);
    widget.SetGrey(5);
    QTRY_COMPARE_WITH_TIMEOUT(gate.begun.load(), 2, PatienceMs); // the first one was aborted
    gate.isOpen = true;
    QTRY_COMPARE_WITH_TIMEOUT(problems, QStringList{QString()}, PatienceMs);
    QVERIFY(IsGrey(widget.AdjustedImage(), 6));
}

void TestYDTaskWidget::AJobWithoutATaskHasNoProblem()
{
    Gate gate;
    GreyWidget widget(gate);
    widget.SetGrey(-3);
    QSignalSpy ready(&widget, &YDAdjustmentWidget::ImageReady);
    GiveSource(widget);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(!widget.Problem().isEmpty());
    widget.SetGrey(200);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QCOMPARE(widget.Problem(), QString());
}

void TestYDTaskWidget::AWidgetThatIsDestroyedEndsItsJob()
{
    Gate gate;
    gate.isOpen = false;
    auto widget = std::make_unique<GreyWidget>(gate);
    GiveSource(*widget);
    QTRY_COMPARE_WITH_TIMEOUT(gate.begun.load(), 1, PatienceMs);
    widget.reset(); // the gate never opens
    QCOMPARE(gate.ended.load(), 1);
}

QTEST_MAIN(TestYDTaskWidget)
#include "tst_YDTaskWidget.moc"
