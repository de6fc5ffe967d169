#include "MemoryLimit.h"
#include "TestPictures.h"
#include "operations/BrightnessContrast.h"
#include "operations/Catalog.h"
#include "operations/ColorEnhancer.h"
#include "operations/Curves.h"
#include "operations/Gamma.h"
#include "operations/ReplaceColor.h"
#include "operations/Sign.h"
#include "operations/TaskProgress.h"
#include "operations/Tint.h"
#include "operations/WhiteBalance.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

using operations::Selection;
using operations::Task;

Q_DECLARE_METATYPE(Task)
Q_DECLARE_METATYPE(Task::Copying)

/// What holds for tasks, whichever adjustment they are of. No widget is involved, and no QApplication.
class TestTask : public QObject
{
    Q_OBJECT

private slots:
    void ATaskOfNothingChangesNothing();
    void ApplyChangesThePictureItself();
    void ApplyToCopyLeavesTheSource();
    void ASelectionLimitsTheTask();
    void AnEmptyPictureStaysEmptyWithoutAProblem();
    void ATaskKeepsTheSettingsThatItWasMadeFrom();
    void AnAbortedTaskGivesNoComplaint();
    void AnAbortedTaskInASelectionGivesNoComplaint();
    void ProgressIsToldToTheEnd();
    void AnAbortedCorrectionStillBeginsEachPass();
    void ATintWithoutARuleHasNoPicture();
    void TooLittleMemoryIsToldBeforeAnythingIsDone_data();
    void TooLittleMemoryIsToldBeforeAnythingIsDone();
    void AMissingMaskIsToldBeforeAnythingIsDone();
    void ACopyIsAdjustedAsThePictureIs_data();
    void ACopyIsAdjustedAsThePictureIs();
    void OneTaskServesSeveralPicturesAtOnce();
    void FourThreadsRunFourTasksOnFourPictures();
    void EveryAdjustmentRunsOnAnyThread_data();
    void EveryAdjustmentRunsOnAnyThread();
};

void TestTask::ATaskOfNothingChangesNothing()
{
    const RGBA32iImage picture = TestPictures::Noise(20, 10);
    const operations::Outcome outcome = Task().Apply(picture);
    QVERIFY(outcome.picture.SharesPixelsWith(picture));
    QCOMPARE(outcome.problem, QString());
    QVERIFY(TestPictures::AreEqual(picture, TestPictures::Noise(20, 10)));
}

void TestTask::ApplyChangesThePictureItself()
{
    const RGBA32iImage picture = TestPictures::Grey(300, 200, 100);
    const operations::Outcome outcome = MakeTask(operations::Gamma{2.0}).Apply(picture);
    QVERIFY(outcome.picture.SharesPixelsWith(picture));
    QCOMPARE(int(picture.Row(199)[299].g), 160); // 255 * (100 / 255)^(1 / 2) = 159.7
    QCOMPARE(int(picture.Row(0)[0].a), 255);
}

void TestTask::ApplyToCopyLeavesTheSource()
{
    const RGBA32iImage source = TestPictures::Grey(300, 200, 100);
    const RGBA32iImage adjusted = MakeTask(operations::Gamma{2.0}).ApplyToCopy(source).picture;
    QVERIFY(!adjusted.SharesPixelsWith(source));
    QVERIFY(TestPictures::AreEqual(source, TestPictures::Grey(300, 200, 100)));
    QVERIFY(TestPictures::AreEqual(adjusted, TestPictures::Grey(300, 200, 160)));
}

void TestTask::ASelectionLimitsTheTask()
{
    const RGBA32iImage mask(2, 1);
    mask.Row(0)[0] = YDRGBA32i(255, 255, 255, 255);
    mask.Row(0)[1] = YDRGBA32i(128, 128, 128, 128);
    const RGBA32iImage source = TestPictures::Grey(5, 3, 100);
    const RGBA32iImage adjusted =
        MakeTask(operations::Gamma{2.0}).ApplyToCopy(source, Selection::Of(mask, QPoint(2, 1))).picture;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) {
            const bool isRow = y == 1;
            const int expected = isRow && x == 2 ? 160 : isRow && x == 3 ? 130 : 100; // 100 + 60 * 128 / 255
            QCOMPARE(int(adjusted.Row(y)[x].g), expected);
        }
}

void TestTask::AnEmptyPictureStaysEmptyWithoutAProblem()
{
    for (const operations::Adjustment& adjustment : operations::Catalog::All()) {
        const operations::Outcome outcome = adjustment.makeSettings()->MakeTask().ApplyToCopy(RGBA32iImage());
        QVERIFY2(outcome.picture.IsEmpty(), qPrintable(adjustment.name));
        QVERIFY2(outcome.problem.isEmpty(), qPrintable(adjustment.name + ": " + outcome.problem));
    }
}

void TestTask::ATaskKeepsTheSettingsThatItWasMadeFrom()
{
    const auto settings = operations::Catalog::Find(QStringLiteral("gamma"))->makeSettings();
    QCOMPARE(settings->SetFromText(QStringLiteral("gamma=2")), QString());
    const Task task = settings->MakeTask();
    QCOMPARE(settings->SetFromText(QStringLiteral("gamma=1")), QString());
    QCOMPARE(int(task.ApplyToCopy(TestPictures::Grey(1, 1, 100)).picture.Row(0)[0].g), 160);
}

void TestTask::AnAbortedTaskGivesNoComplaint()
{
    const std::atomic<bool> abort{true};
    for (const operations::Adjustment& adjustment : operations::Catalog::All()) {
        const operations::Outcome outcome = adjustment.makeSettings()->MakeTask().ApplyToCopy(
            TestPictures::Noise(64, 64), {}, {&abort, nullptr});
        QVERIFY2(outcome.problem.isEmpty(), qPrintable(adjustment.name + ": " + outcome.problem));
    }
}

/// Through a selection the advanced balance goes roads of its own.
void TestTask::AnAbortedTaskInASelectionGivesNoComplaint()
{
    const std::atomic<bool> abort{true};
    operations::WhiteBalance advanced;
    advanced.enhanced = true;
    const Selection selection = Selection::Of(TestPictures::Grey(30, 20, 200), QPoint(5, 5));
    const operations::Outcome outcome =
        MakeTask(advanced).Apply(TestPictures::Noise(64, 64), selection, {&abort, nullptr});
    QCOMPARE(outcome.problem, QString());
    QVERIFY(TestPictures::AreEqual(outcome.picture, TestPictures::Noise(64, 64)));
}

void TestTask::ProgressIsToldToTheEnd()
{
    operations::TaskProgress progress;
    QSignalSpy ranges(&progress, &operations::TaskProgress::RangeChanged);
    QSignalSpy values(&progress, &operations::TaskProgress::ValueChanged);
    (void)MakeTask(operations::Gamma{2.0})
        .ApplyToCopy(TestPictures::Grey(20, 700, 9), {}, {nullptr, &progress});
    QCOMPARE(ranges, (QList<QList<QVariant>>{{0, 700}}));
    QVERIFY(values.size() >= 50 && values.size() <= 120);
    QCOMPARE(values.last(), QList<QVariant>{700});
}

void TestTask::AnAbortedCorrectionStillBeginsEachPass()
{
    operations::WhiteBalance balance;
    balance.enhanced = true;
    balance.useTemperature = true;
    const std::atomic<bool> abort{true};
    const RGBA32iImage mask = TestPictures::Grey(30, 40, 255);
    for (const operations::Selection& selection :
         {operations::Selection(), operations::Selection::Of(mask, QPoint(0, 0))}) {
        operations::TaskProgress progress;
        QSignalSpy ranges(&progress, &operations::TaskProgress::RangeChanged);
        (void)MakeTask(balance).Apply(TestPictures::Noise(30, 40), selection, {&abort, &progress});
        QCOMPARE(ranges.size(), 3);
    }
}

void TestTask::ATintWithoutARuleHasNoPicture()
{
    operations::Tint tint;
    tint.type = 4;
    const operations::Outcome outcome = MakeTask(tint).ApplyToCopy(TestPictures::Noise(8, 8));
    QVERIFY(outcome.picture.IsEmpty());
    QVERIFY(!outcome.problem.isEmpty());
}

void TestTask::TooLittleMemoryIsToldBeforeAnythingIsDone_data()
{
    QTest::addColumn<Task::Copying>("copying");
    QTest::newRow("copied before") << Task::Copying::Before;
    QTest::newRow("copied in the first pass") << Task::Copying::InFirstPass;
    QTest::newRow("copied by the task") << Task::Copying::InTask;
}

void TestTask::TooLittleMemoryIsToldBeforeAnythingIsDone()
{
    QFETCH(Task::Copying, copying);
    bool isRun = false;
    const Task task(
        [&isRun](const YDAdjustmentJob& job) {
            isRun = true;
            return operations::Outcome(job.image);
        },
        copying);
    const auto source = RGBA32iImage::Uninitialized(12000, 10000); // nobody writes to its 480 MB
    QVERIFY(!source.IsEmpty());
    {
        const MemoryLimit noRoomForACopy;
        const operations::Outcome outcome = task.ApplyToCopy(source);
        QVERIFY(outcome.picture.IsEmpty());
        QVERIFY2(outcome.problem.contains(QStringLiteral("memory")), qPrintable(outcome.problem));
        QVERIFY(!isRun);
        const std::atomic<bool> abort{true};
        QCOMPARE(task.ApplyToCopy(source, {}, {&abort, nullptr}).problem, QString());
    }
    QVERIFY(!task.ApplyToCopy(RGBA32iImage(3, 2)).picture.IsEmpty());
    QVERIFY(isRun);
}

void TestTask::AMissingMaskIsToldBeforeAnythingIsDone()
{
    const Task task = MakeTask(operations::Gamma{2.0});
    const RGBA32iImage picture = TestPictures::Grey(30, 20, 100);
    const operations::Outcome outcome = task.Apply(picture, Selection::Missing());
    QVERIFY2(outcome.problem.contains(QStringLiteral("memory")), qPrintable(outcome.problem));
    QVERIFY(TestPictures::AreEqual(picture, TestPictures::Grey(30, 20, 100)));
    const operations::Outcome copied = task.ApplyToCopy(picture, Selection::Missing());
    QVERIFY2(copied.problem.contains(QStringLiteral("memory")), qPrintable(copied.problem));
    QVERIFY(copied.picture.IsEmpty());
}

void TestTask::ACopyIsAdjustedAsThePictureIs_data()
{
    QTest::addColumn<Task>("task");
    QTest::addColumn<Selection>("selection");
    const RGBA32iImage mask = TestPictures::Random(900, 70, 5);
    for (int y = 20; y < 40; ++y) { // rows of full and of no coverage
        const quint8 coverage = y < 30 ? 255 : 0;
        std::fill_n(mask.Row(y), 900, YDRGBA32i(coverage, coverage, coverage, coverage));
    }
    operations::WhiteBalance advanced;
    advanced.enhanced = true;
    operations::WhiteBalance filtered = advanced;
    filtered.useTemperature = true;
    filtered.temperature = 60;
    operations::Sign missing;
    missing.fileName = QStringLiteral("/nowhere/stamp.png");
    const auto add = [&mask](const QString& name, const Task& task) {
        QTest::newRow(qPrintable(name)) << task << Selection();
        QTest::newRow(qPrintable(name + ", inside")) << task << Selection::Of(mask, QPoint(200, 10));
        QTest::newRow(qPrintable(name + ", beyond the corner"))
            << task << Selection::Of(mask, QPoint(-50, -20));
        QTest::newRow(qPrintable(name + ", outside")) << task << Selection::Of(mask, QPoint(5000, 0));
    };
    for (const operations::Adjustment& adjustment : operations::Catalog::All())
        add(adjustment.name, adjustment.makeSettings()->MakeTask());
    add(QStringLiteral("advanced"), MakeTask(advanced));
    add(QStringLiteral("advanced and filtered"), MakeTask(filtered));
    add(QStringLiteral("stamp that is not there"), MakeTask(missing));
}

void TestTask::ACopyIsAdjustedAsThePictureIs()
{
    QFETCH(Task, task);
    QFETCH(Selection, selection);
    const RGBA32iImage source = TestPictures::Random(1300, 90, 6);
    const RGBA32iImage untouched = source.DeepCopy();
    const RGBA32iImage picture = source.DeepCopy();
    const operations::Outcome applied = task.Apply(picture, selection);
    const operations::Outcome copied = task.ApplyToCopy(source, selection);
    QVERIFY(TestPictures::AreEqual(copied.picture, applied.picture));
    QCOMPARE(copied.problem, applied.problem);
    QVERIFY(TestPictures::AreEqual(source, untouched));
}

void TestTask::OneTaskServesSeveralPicturesAtOnce()
{
    const Task task = MakeTask(operations::ColorEnhancer{60, 40});
    constexpr int Threads = 4;
    std::vector<RGBA32iImage> expected;
    for (int i = 0; i < Threads; ++i)
        expected.push_back(task.ApplyToCopy(TestPictures::Random(200 + i, 150, quint32(i))).picture);
    std::vector<RGBA32iImage> adjusted(Threads);
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i)
        threads.emplace_back([&task, &adjusted, i] {
            adjusted[std::size_t(i)] =
                task.ApplyToCopy(TestPictures::Random(200 + i, 150, quint32(i))).picture;
        });
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < Threads; ++i)
        QVERIFY(TestPictures::AreEqual(adjusted[i], expected[i]));
}

void TestTask::FourThreadsRunFourTasksOnFourPictures()
{
    operations::WhiteBalance advanced;
    advanced.enhanced = true;
    operations::Curves curves;
    curves.curves[0] = {{0, 0}, {100, 140}, {255, 255}};
    const std::vector<Task> tasks{MakeTask(advanced), MakeTask(curves),
                                  MakeTask(operations::BrightnessContrast{30, 40}),
                                  MakeTask(operations::ReplaceColor{200, 1, QColor(1, 2, 3), 50})};
    const Selection selection = Selection::Of(TestPictures::Grey(120, 90, 200), QPoint(20, 30));
    const auto adjust = [&](std::size_t i) {
        const RGBA32iImage picture = TestPictures::Random(300, 200, quint32(i));
        return tasks[i].ApplyToCopy(picture, i % 2 == 0 ? selection : Selection()).picture;
    };
    std::vector<RGBA32iImage> expected;
    for (std::size_t i = 0; i < tasks.size(); ++i)
        expected.push_back(adjust(i));
    std::vector<RGBA32iImage> adjusted(tasks.size());
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < tasks.size(); ++i)
        threads.emplace_back([&adjusted, &adjust, i] { adjusted[i] = adjust(i); });
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < tasks.size(); ++i)
        QVERIFY(TestPictures::AreEqual(adjusted[i], expected[i]));
}

void TestTask::EveryAdjustmentRunsOnAnyThread_data()
{
    QTest::addColumn<QString>("name");
    for (const operations::Adjustment& adjustment : operations::Catalog::All())
        QTest::newRow(qPrintable(adjustment.name)) << adjustment.name;
}

void TestTask::EveryAdjustmentRunsOnAnyThread()
{
    QFETCH(QString, name);
    const Task task = operations::Catalog::Find(name)->makeSettings()->MakeTask();
    const RGBA32iImage picture = TestPictures::Noise(200, 100);
    const RGBA32iImage expected = task.ApplyToCopy(picture).picture;
    RGBA32iImage adjusted;
    std::thread([&] { adjusted = task.ApplyToCopy(picture).picture; }).join();
    QVERIFY(TestPictures::AreEqual(adjusted, expected));
}

QTEST_MAIN(TestTask)
#include "tst_Task.moc"
