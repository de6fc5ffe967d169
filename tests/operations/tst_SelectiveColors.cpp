#include "FakeDevice.h"
#include "LoggedMessages.h"
#include "SelectiveColorsCases.h"
#include "TestPictures.h"
#include "gpu/SharedDevice.h"
#include "operations/SelectiveColors.h"
#include "operations/TaskProgress.h"

#include <QtTest>

#include <thread>

using operations::Selection;

namespace {

operations::SelectiveColors SomeSettings(quint32 seed)
{
    SelectiveParamsList params;
    params.targets = SelectiveColorsCases::RandomTargets(seed);
    params.mode = SelectiveParamsList::Absolute;
    return operations::SelectiveColors(params);
}

QImage ByProcessor(const RGBA32iImage& source, const Selection& selection, quint32 seed)
{
    const operations::Task task = operations::MakeProcessorTask(SomeSettings(seed).List());
    return ImageToQImage(task.ApplyToCopy(source, selection).picture);
}

} // namespace

/// The settings' task, which uses whatever device OpenCL offers.
class TestSelectiveColors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void TheDeviceGivesTheBytesOfTheProcessor_data();
    void TheDeviceGivesTheBytesOfTheProcessor();
    void ATaskThatFindsTheDeviceAtWorkGivesThemToo();
    void WhatADeviceFailsAtTheProcessorMakesOfTheSource();
    void AnAbortedRunTellsNoProblem();
    void ProgressComesToItsEnd();
    void FourThreadsAdjustFourPicturesAtOnce();
};

void TestSelectiveColors::initTestCase()
{
    QVERIFY2(SharedDevice::OfProcess(),
             "There is no OpenCL to test with; `./dev install-deps` installs PoCL.");
}

void TestSelectiveColors::TheDeviceGivesTheBytesOfTheProcessor_data()
{
    QTest::addColumn<Selection>("selection");
    const RGBA32iImage mask = SelectiveColorsCases::Mask(200, 90, 3);
    const QRect all(0, 0, 200, 90);
    QTest::newRow("all of the picture") << Selection();
    QTest::newRow("a mask inside the picture") << Selection{mask, QPoint(20, 10), all};
    QTest::newRow("a mask that reaches beyond it") << Selection{mask, QPoint(-50, 60), all};
    QTest::newRow("a part of a mask") << Selection{mask, QPoint(5, 7), QRect(30, 20, 64, 33)};
    QTest::newRow("a mask that misses the picture") << Selection{mask, QPoint(1000, 0), all};
    QTest::newRow("bounds without a mask") << Selection{RGBA32iImage(), QPoint(), all};
}

void TestSelectiveColors::TheDeviceGivesTheBytesOfTheProcessor()
{
    QFETCH(Selection, selection);
    const RGBA32iImage source = TestPictures::Random(300, 120, 7);
    const QImage before = ImageToQImage(source).copy();
    const QImage expected = ByProcessor(source, selection, 1);
    const operations::Task task = operations::MakeTask(SomeSettings(1));

    QCOMPARE(ImageToQImage(task.ApplyToCopy(source, selection).picture), expected);
    QCOMPARE(ImageToQImage(source), before);

    const RGBA32iImage inPlace = source.DeepCopy();
    const operations::Outcome outcome = task.Apply(inPlace, selection);
    QVERIFY(outcome.picture.SharesPixelsWith(inPlace));
    QCOMPARE(outcome.problem, QString());
    QCOMPARE(ImageToQImage(inPlace), expected);
}

void TestSelectiveColors::ATaskThatFindsTheDeviceAtWorkGivesThemToo()
{
    const RGBA32iImage source = TestPictures::Random(300, 120, 7);
    const SharedDevice::Turn device = SharedDevice::OfProcess()->Take();
    QVERIFY(device);
    QImage adjusted;
    std::thread([&] {
        adjusted = ImageToQImage(operations::MakeTask(SomeSettings(2)).ApplyToCopy(source).picture);
    }).join();
    QCOMPARE(adjusted, ByProcessor(source, {}, 2));
}

void TestSelectiveColors::WhatADeviceFailsAtTheProcessorMakesOfTheSource()
{
    const LoggedMessages failures(QtWarningMsg);
    const RGBA32iImage source = TestPictures::Random(300, 120, 7);
    for (const bool isCopy : {false, true}) {
        const auto state = std::make_shared<DeviceState>();
        state->fails = true;
        state->spoilsResult = true;
        SharedDevice device(std::make_unique<FakeDevice>(state));
        const operations::Task task = operations::MakeDeviceTask(SomeSettings(3), &device);
        const operations::Outcome outcome = isCopy ? task.ApplyToCopy(source) : task.Apply(source.DeepCopy());
        QCOMPARE(state->begun.load(), 1);
        QCOMPARE(outcome.problem, QString());
        QCOMPARE(ImageToQImage(outcome.picture), ByProcessor(source, {}, 3));
    }
    QCOMPARE(failures.All().size(), 2);
}

void TestSelectiveColors::AnAbortedRunTellsNoProblem()
{
    const std::atomic<bool> abort{true};
    const RGBA32iImage source = TestPictures::Random(300, 120, 7);
    const operations::Outcome outcome =
        operations::MakeTask(SomeSettings(1)).ApplyToCopy(source, {}, {&abort, nullptr});
    QCOMPARE(outcome.problem, QString());
    QVERIFY(outcome.picture.IsEmpty());
}

void TestSelectiveColors::ProgressComesToItsEnd()
{
    operations::TaskProgress progress;
    const QSignalSpy ranges(&progress, &operations::TaskProgress::RangeChanged);
    const QSignalSpy values(&progress, &operations::TaskProgress::ValueChanged);
    const auto outcome = operations::MakeTask(SomeSettings(1))
                             .ApplyToCopy(TestPictures::Random(300, 120, 7), {}, {nullptr, &progress});
    QVERIFY(!outcome.picture.IsEmpty());
    QVERIFY(!ranges.isEmpty());
    QVERIFY(!values.isEmpty());
    QCOMPARE(values.last().at(0), ranges.last().at(1));
    QCOMPARE(ranges.last().at(1).toInt(), 1); // the device's one step: the processor counts rows
}

void TestSelectiveColors::FourThreadsAdjustFourPicturesAtOnce()
{
    constexpr quint32 Threads = 4;
    std::array<QImage, Threads> adjusted;
    std::vector<std::thread> threads;
    for (quint32 i = 0; i < Threads; ++i) {
        threads.emplace_back([i, &adjusted] {
            const RGBA32iImage source = TestPictures::Random(300, 120, i);
            for (int round = 0; round < 5; ++round)
                adjusted[i] =
                    ImageToQImage(operations::MakeTask(SomeSettings(i)).ApplyToCopy(source).picture);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (quint32 i = 0; i < Threads; ++i)
        QCOMPARE(adjusted[i], ByProcessor(TestPictures::Random(300, 120, i), {}, i));
}

QTEST_GUILESS_MAIN(TestSelectiveColors)
#include "tst_SelectiveColors.moc"
