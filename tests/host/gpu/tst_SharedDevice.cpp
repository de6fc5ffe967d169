#include "FakeDevice.h"
#include "LoggedMessages.h"
#include "SelectiveColorsCases.h"
#include "gpu/SharedDevice.h"

#include <QtTest>

#include <thread>

using namespace SelectiveColorsCases;

namespace {

const std::atomic<bool> NeverAborted{false};

SelectiveColorsJob SomeJob()
{
    SelectiveColorsJob job;
    job.source = SharedPixels::Of(TestPictures::Random(150, 40, 7));
    job.rule = SelectiveColorsRule(RandomTargets(1), SelectiveParamsList::Relative);
    return job;
}

} // namespace

class TestSharedDevice : public QObject
{
    Q_OBJECT

private slots:
    void OneHasItAtATime();
    void AdjustsWithPixelsThatMayGo();
    void ADeviceThatFailedIsLeftAlone();
    void OfManyThreadsEachHasItAloneOrNotAtAll();
};

void TestSharedDevice::OneHasItAtATime()
{
    SharedDevice device(std::make_unique<FakeDevice>(std::make_shared<DeviceState>()));
    {
        const SharedDevice::Turn first = device.Take();
        QVERIFY(first);
        bool isHad = true;
        std::thread([&] { isHad = bool(device.Take()); }).join();
        QVERIFY(!isHad);
    }
    bool isHad = false;
    std::thread([&] { isHad = bool(device.Take()); }).join();
    QVERIFY(isHad);
}

void TestSharedDevice::AdjustsWithPixelsThatMayGo()
{
    const auto state = std::make_shared<DeviceState>();
    SharedDevice device(std::make_unique<FakeDevice>(state));
    const SelectiveColorsJob job = SomeJob();
    const RGBA32iImage result(job.source.width, job.source.height);
    QVERIFY(device.Take().Adjust(job, result, NeverAborted));
    QCOMPARE(ImageToQImage(result), ImageToQImage(Expected(job)));
    QVERIFY(state->isBorrowed);
}

void TestSharedDevice::ADeviceThatFailedIsLeftAlone()
{
    const LoggedMessages warnings(QtWarningMsg);
    const auto state = std::make_shared<DeviceState>();
    state->fails = true;
    SharedDevice device(std::make_unique<FakeDevice>(state));
    const SelectiveColorsJob job = SomeJob();
    const RGBA32iImage result(job.source.width, job.source.height);
    QVERIFY(!device.Take().Adjust(job, result, NeverAborted));
    state->fails = false;
    QVERIFY(!device.Take().Adjust(job, result, NeverAborted));
    QCOMPARE(state->begun.load(), 1);
    QCOMPARE(warnings.All(), QStringList{"Selective colours go on without a fake: it broke"});
}

void TestSharedDevice::OfManyThreadsEachHasItAloneOrNotAtAll()
{
    const auto state = std::make_shared<DeviceState>();
    SharedDevice device(std::make_unique<FakeDevice>(state));
    std::atomic<int> users{0};
    std::atomic<int> done{0};
    std::atomic<bool> wasAlone{true};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            const SelectiveColorsJob job = SomeJob();
            const RGBA32iImage result(job.source.width, job.source.height);
            for (int round = 0; round < 50; ++round) {
                SharedDevice::Turn turn = device.Take();
                if (!turn)
                    continue;
                if (++users != 1)
                    wasAlone = false;
                done += int(turn.Adjust(job, result, NeverAborted));
                --users;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QVERIFY(wasAlone);
    QVERIFY(done > 0);
    QCOMPARE(state->begun.load(), done.load());
}

QTEST_GUILESS_MAIN(TestSharedDevice)
#include "tst_SharedDevice.moc"
