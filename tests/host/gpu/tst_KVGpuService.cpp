#include "FakeDevice.h"
#include "LoggedMessages.h"
#include "OpenClProbe.h"
#include "SelectiveColorsCases.h"
#include "core/KVApplication.h"
#include "gpu/OpenClDevice.h"
#include "gpu/SelectiveColorsService.h"

#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

#include <cstdio>
#include <limits>

Q_DECLARE_METATYPE(SelectiveParams)

using namespace SelectiveColorsCases;

namespace {

constexpr int Width = 150;
constexpr int Height = 40;
constexpr int TimeoutMs = 60000; ///< for what ends much sooner

/// The service of this program; null where there is none.
SelectiveColorsService* TheService()
{
    return dynamic_cast<SelectiveColorsService*>(KVGpuService::get_instance());
}

/// A service on a fake device, and what it said, in order: "finished 1", "dropped 2".
class ServiceProbe
{
public:
    ServiceProbe()
        : state(std::make_shared<DeviceState>()),
          service(std::make_unique<SelectiveColorsService>(std::make_unique<FakeDevice>(state)))
    {
        QObject::connect(service.get(), &KVGpuService::finished, service.get(),
                         [this](const RGBA32iImage& image) {
                             said.append(QStringLiteral("finished %1").arg(service->request_of(image)));
                             last = image;
                         });
        QObject::connect(service.get(), &SelectiveColorsService::dropped, service.get(),
                         [this](quint64 request) { said.append(QStringLiteral("dropped %1").arg(request)); });
    }

    quint64 Ask(const QObject* requester = nullptr, const QList<SelectiveParams>& targets = RandomTargets(1))
    {
        return service->request_selective_color(source.SharedPixels(), Width, Height, targets, Mode::Relative,
                                                nullptr, 0, 0, 0, 0, false, requester);
    }
    RGBA32iImage ExpectedFor(const QList<SelectiveParams>& targets) const
    {
        SelectiveColorsJob job;
        job.source = SharedPixels::Of(source);
        job.rule = SelectiveColorsRule(targets, Mode::Relative);
        return Expected(job);
    }

    const RGBA32iImage source = TestPictures::Random(Width, Height, 3);
    const std::shared_ptr<DeviceState> state;
    QStringList said;
    RGBA32iImage last;
    std::unique_ptr<SelectiveColorsService> service; // the first to go
};

/// This program as a child, in the mode `mode`, which is one of main()'s.
struct Child
{
    Child(const char* mode, const QStringList& environment)
    {
        QProcess process;
        process.setEnvironment(QProcess::systemEnvironment().filter(QRegularExpression(
                                   QStringLiteral("^(?!ADJUSTMENTGUI_GPU=)(?!OCL_ICD_VENDORS=)"))) +
                               environment);
        process.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(mode)});
        process.waitForFinished(TimeoutMs);
        hasEnded = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
        output = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
        errors = QString::fromUtf8(process.readAllStandardError()).trimmed();
    }

    bool hasEnded = false;
    QString output;
    QString errors;
};

} // namespace

class TestKVGpuService : public QObject
{
    Q_OBJECT

private slots:
    void TheInstanceFollowsEnvironmentAndSetting_data();
    void TheInstanceFollowsEnvironmentAndSetting();
    void ThereIsOneInstance();
    void AnswersWithTheBytesOfTheRule();
    void AnswersCallsOfAnyKind_data();
    void AnswersCallsOfAnyKind();
    void APlainCallGivesTheBytesOfTheRule_data();
    void APlainCallGivesTheBytesOfTheRule();
    void APlainCallForNoPictureIsWarnedOf();
    void RefusesPicturesThatAreNotThere_data();
    void RefusesPicturesThatAreNotThere();
    void DropsAPictureThatThereIsNoMemoryFor();
    void TheNewestRequestOfARequesterWins();
    void RequestsOfOthersAreNotLost();
    void ALateAnswerIsNotGiven();
    void CancellingDropsAtOnce();
    void ARequesterTakesItsRequestAlong();
    void KnowsTheRequestOfAnAnswerAlone();
    void TheProcessorDoesWhatTheDeviceFailsAt();
    void AFailedDeviceIsTriedAgainWithTheNextFilter();
    void ADeviceThatCannotBeginIsLeftAlone();
    void PicturesAreKeptWhileAFilterIsActive();
    void EndsWhileAtWork();
    void MayBeDeletedByWhoHearsOfAnAnswer();
    void AnApplicationQuitsWhileAtWork();
    void NothingLeaksInTenThousandRequests();
};

void TestKVGpuService::TheInstanceFollowsEnvironmentAndSetting_data()
{
    QTest::addColumn<QString>("setting"); // null: none
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<QString>("logged");
    const auto row = [](const char* name, const QString& setting, const QStringList& environment,
                        bool isThere, const char* logged) {
        QTest::newRow(name) << setting << environment << isThere << QString::fromLatin1(logged);
    };
    const QString none;
    const QString off = QStringLiteral("off");
    const QString any = QStringLiteral("any");
    const auto use = [](const char* text) {
        return QStringLiteral("ADJUSTMENTGUI_GPU=") + QLatin1String(text);
    };
    const QString pocl = QStringLiteral("OCL_ICD_VENDORS=/etc/OpenCL/vendors/pocl.icd");
    const QString noDriver = QStringLiteral("OCL_ICD_VENDORS=/nowhere");
    row("nothing said", none, {pocl}, false, "");
    row("off", none, {pocl, use("off")}, false, "");
    row("auto", none, {pocl, use("auto")}, false, "");
    row("any", none, {pocl, use("any")}, true, "");
    row("any in other letters", none, {pocl, use(" Any")}, true, "");
    row("unknown", none, {pocl, use("yes")}, false, "ADJUSTMENTGUI_GPU is \"yes\"");
    row("empty", any, {pocl, use("")}, true, "");
    row("any without a driver", none, {noDriver, use("any")}, false, "no driver is installed");
    row("auto without a driver", none, {noDriver, use("auto")}, false, "");
    row("setting any", any, {pocl}, true, "");
    row("setting unknown", QStringLiteral("maybe"), {pocl}, false, "gpu/use is \"maybe\"");
    row("environment wins", any, {pocl, use("off")}, false, "");
    row("environment wins again", off, {pocl, use("any")}, true, "");
}

void TestKVGpuService::TheInstanceFollowsEnvironmentAndSetting()
{
    QFETCH(QString, setting);
    QFETCH(QStringList, environment);
    QFETCH(bool, isThere);
    QFETCH(QString, logged);
    {
        QSettings settings;
        settings.clear();
        if (!setting.isNull())
            KVApplication::SetGpuUse(setting);
    }
    const Child child("--instance", environment);
    QVERIFY2(child.hasEnded, qPrintable(child.errors));
    QVERIFY2(isThere ? child.output.startsWith(QStringLiteral("device "))
                     : child.output == QStringLiteral("none"),
             qPrintable(child.output));
    QCOMPARE(child.errors.isEmpty(), logged.isEmpty());
    QVERIFY2(child.errors.contains(logged), qPrintable(child.errors));
    QSettings().clear();
}

void TestKVGpuService::ThereIsOneInstance()
{
    SelectiveColorsService* const service = TheService();
    QVERIFY2(service, "OpenCL has no device to test with; `./dev install-deps` installs PoCL.");
    QCOMPARE(KVGpuService::get_instance(), service);
    QVERIFY(!service->device_name().isEmpty());
}

void TestKVGpuService::AnswersWithTheBytesOfTheRule()
{
    SelectiveColorsService* const service = TheService();
    QVERIFY(service);
    const RGBA32iImage source = TestPictures::Random(1000, 701, 8);
    const RGBA32iImage mask = Mask(640, 500, 9);
    QSignalSpy finished(service, &KVGpuService::finished);
    service->begin_filter(1000, 701);
    for (const Mode mode : {Mode::Relative, Mode::Absolute}) {
        for (const bool hasMask : {false, true}) {
            SelectiveColorsJob job;
            job.source = SharedPixels::Of(source);
            job.rule = SelectiveColorsRule(RandomTargets(5), mode);
            if (hasMask)
                job.mask = SharedPixels::Of(mask);
            job.maskX = -40;
            job.maskY = 300;
            const quint64 request = service->request_selective_color(
                source.SharedPixels(), 1000, 701, RandomTargets(5), mode, job.mask.handle, job.mask.width,
                job.mask.height, -40, 300, false, this);
            QVERIFY(finished.wait(TimeoutMs));
            const auto image = finished.takeFirst().at(0).value<RGBA32iImage>();
            QCOMPARE(service->request_of(image), request);
            QVERIFY(!image.SharesPixelsWith(source));
            QVERIFY(TestPictures::AreEqual(image, Expected(job)));
        }
    }
    service->end_filter();
}

void TestKVGpuService::AnswersCallsOfAnyKind_data()
{
    constexpr int Lowest = std::numeric_limits<int>::min();
    constexpr int Highest = std::numeric_limits<int>::max();
    constexpr float NoNumber = std::numeric_limits<float>::quiet_NaN();
    constexpr float Infinite = std::numeric_limits<float>::infinity();
    QTest::addColumn<int>("targets");
    QTest::addColumn<SelectiveParams>("params");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QSize>("maskSize");
    QTest::addColumn<QPoint>("offset");
    const SelectiveParams some{10, 20, -30, 40};
    const auto row = [](const char* name, int targets, const SelectiveParams& params, int mode,
                        QSize maskSize, QPoint offset) {
        QTest::newRow(name) << targets << params << mode << maskSize << offset;
    };
    row("no target", 0, some, 0, {}, {});
    row("few targets", 4, some, 0, {}, {});
    row("too many targets", 2000, some, 0, {}, {});
    row("no numbers", 9, {NoNumber, NoNumber, NoNumber, NoNumber}, 0, {}, {});
    row("infinite", 9, {Infinite, -Infinite, 1e30f, -1e30f}, 1, {}, {});
    row("unknown mode", 9, some, 77, {}, {});
    row("mask without a size", 9, some, 0, {0, 0}, {});
    row("mask of negative size", 9, some, 0, {-5, Lowest}, {3, 3});
    row("offset far up and left", 9, some, 0, {20, 20}, {Lowest, Lowest});
    row("offset far down and right", 9, some, 0, {20, 20}, {Highest, Highest});
}

void TestKVGpuService::AnswersCallsOfAnyKind()
{
    QFETCH(int, targets);
    QFETCH(SelectiveParams, params);
    QFETCH(int, mode);
    QFETCH(QSize, maskSize);
    QFETCH(QPoint, offset);
    SelectiveColorsService* const service = TheService();
    QVERIFY(service);
    const RGBA32iImage source = TestPictures::Random(Width, Height, 8);
    const RGBA32iImage mask = Mask(20, 20, 9);
    QList<SelectiveParams> list;
    for (int i = 0; i < targets; ++i)
        list.append(params);
    SelectiveColorsJob job;
    job.source = SharedPixels::Of(source);
    job.rule = SelectiveColorsRule(list, static_cast<Mode>(mode));
    if (!maskSize.isNull() || QByteArray(QTest::currentDataTag()).startsWith("mask"))
        job.mask = {mask.SharedPixels(), maskSize.width(), maskSize.height(), mask.RowLength()};
    job.maskX = offset.x();
    job.maskY = offset.y();
    QSignalSpy finished(service, &KVGpuService::finished);
    QVERIFY(service->request_selective_color(source.SharedPixels(), Width, Height, list,
                                             static_cast<Mode>(mode), job.mask.handle, maskSize.width(),
                                             maskSize.height(), offset.x(), offset.y(), false) != 0);
    QVERIFY(finished.wait(TimeoutMs));
    QVERIFY(TestPictures::AreEqual(finished.at(0).at(0).value<RGBA32iImage>(), Expected(job)));
}

void TestKVGpuService::APlainCallGivesTheBytesOfTheRule_data()
{
    QTest::addColumn<bool>("hasMask");
    QTest::newRow("all") << false;
    QTest::newRow("a selection") << true;
}

void TestKVGpuService::APlainCallGivesTheBytesOfTheRule()
{
    QFETCH(bool, hasMask);
    KVGpuService* const service = KVGpuService::get_instance();
    QVERIFY(service);
    const RGBA32iImage source = TestPictures::Random(1000, 301, 8);
    const RGBA32iImage mask = hasMask ? Mask(640, 200, 9) : RGBA32iImage();
    const auto bytesOf = [](const RGBA32iImage& image) {
        return reinterpret_cast<unsigned char*>(image.Pixels());
    };
    QSignalSpy finished(service, &KVGpuService::finished);
    service->begin_filter(1000, 301);
    for (const int seed : {1, 2}) { // the same place with other pixels
        const RGBA32iImage pixels = TestPictures::Random(1000, 301, quint32(seed));
        for (int y = 0; y < source.Height(); ++y)
            std::copy_n(pixels.Row(y), source.Width(), source.Row(y));
        SelectiveColorsJob job;
        job.source = SharedPixels::Of(source);
        job.rule = SelectiveColorsRule(RandomTargets(5), Mode::Absolute);
        if (hasMask)
            job.mask = SharedPixels::Of(mask);
        job.maskX = -40;
        job.maskY = 30;
        service->process_selective_color(bytesOf(source), 1000, 301, RandomTargets(5), Mode::Absolute,
                                         bytesOf(mask), mask.Width(), mask.Height(), -40, 30, false);
        QVERIFY(finished.wait(TimeoutMs));
        QVERIFY(TestPictures::AreEqual(finished.takeFirst().at(0).value<RGBA32iImage>(), Expected(job)));
    }
    service->end_filter();
    QCOMPARE(source.SharedPixels().use_count(), 2L); // the picture's own, and the one just made
}

void TestKVGpuService::APlainCallForNoPictureIsWarnedOf()
{
    const LoggedMessages warnings(QtWarningMsg);
    ServiceProbe probe;
    probe.service->process_selective_color(nullptr, 5, 5, {}, Mode::Relative, nullptr, 0, 0, 0, 0, false);
    QCOMPARE(warnings.All().size(), 1);
    QTest::qWait(50);
    QCOMPARE(probe.said, QStringList());
}

void TestKVGpuService::RefusesPicturesThatAreNotThere_data()
{
    constexpr int Highest = std::numeric_limits<int>::max();
    QTest::addColumn<bool>("hasPixels");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("maskSize");
    QTest::addColumn<int>("maskRowLength");
    const QSize whole(Width, Height);
    const auto row = [](const char* name, bool hasPixels, QSize size, QSize maskSize, int maskRowLength) {
        QTest::newRow(name) << hasPixels << size << maskSize << maskRowLength;
    };
    row("no pixels", false, whole, {}, 0);
    row("no width", true, {0, Height}, {}, 0);
    row("no height", true, {Width, 0}, {}, 0);
    row("negative width", true, {-Width, Height}, {}, 0);
    row("negative height", true, {Width, -Height}, {}, 0);
    row("wider than its memory", true, {Width + 200, Height}, {}, 0);
    row("higher than its memory", true, {Width, Height + 1}, {}, 0);
    row("as large as can be", true, {Highest, Highest}, {}, 0);
    row("mask wider than its memory", true, whole, {129, 20}, 0);
    row("mask higher than its memory", true, whole, {20, 21}, 0);
    row("mask as large as can be", true, whole, {Highest, Highest}, 0);
    row("mask with rows beyond its memory", true, whole, {20, 20}, 136);
    row("mask with rows too short", true, whole, {20, 20}, 19);
    row("mask with negative rows", true, whole, {20, 20}, -128);
}

void TestKVGpuService::RefusesPicturesThatAreNotThere()
{
    QFETCH(bool, hasPixels);
    QFETCH(QSize, size);
    QFETCH(QSize, maskSize);
    QFETCH(int, maskRowLength);
    ServiceProbe probe;
    const RGBA32iImage mask = Mask(20, 20, 9);
    QCOMPARE(probe.service->request_selective_color(
                 hasPixels ? probe.source.SharedPixels() : nullptr, size.width(), size.height(),
                 RandomTargets(1), Mode::Relative, maskSize.isNull() ? nullptr : mask.SharedPixels(),
                 maskSize.width(), maskSize.height(), 0, 0, false, nullptr, maskRowLength),
             quint64(0));
    QCOMPARE(probe.Ask(), quint64(1)); // and nothing is wrong with the next
    QTRY_COMPARE_WITH_TIMEOUT(probe.said, QStringList{QStringLiteral("finished 1")}, TimeoutMs);
}

void TestKVGpuService::DropsAPictureThatThereIsNoMemoryFor()
{
    const LoggedMessages warnings(QtWarningMsg);
    ServiceProbe probe;
    constexpr int Side = 1 << 27; // 64 petabytes; nobody knows what lies behind such a handle
    static const unsigned char pixel[4] = {};
    const std::shared_ptr<const unsigned char> pixels(pixel, [](const unsigned char*) {});
    QCOMPARE(probe.service->request_selective_color(pixels, Side, Side, {}, Mode::Relative, nullptr, 0, 0, 0,
                                                    0, false),
             quint64(1));
    QTRY_COMPARE_WITH_TIMEOUT(probe.said, QStringList{QStringLiteral("dropped 1")}, TimeoutMs);
    QCOMPARE(warnings.All().size(), 1);
    QVERIFY(warnings.All().first().contains(QString::number(Side)));
}

void TestKVGpuService::TheNewestRequestOfARequesterWins()
{
    ServiceProbe probe;
    probe.state->isHeld = true;
    probe.Ask(this);
    QTRY_COMPARE_WITH_TIMEOUT(probe.state->begun.load(), 1, TimeoutMs);
    probe.Ask(this, RandomTargets(2)); // the first is given up, and this begins or waits
    const quint64 newest = probe.Ask(this, RandomTargets(3));
    QCOMPARE(newest, quint64(3));
    probe.state->isHeld = false;
    QTRY_COMPARE_WITH_TIMEOUT(probe.said.size(), 3, TimeoutMs);
    QVERIFY(probe.said.contains(QStringLiteral("dropped 1")));
    QVERIFY(probe.said.contains(QStringLiteral("dropped 2")));
    QVERIFY(probe.said.contains(QStringLiteral("finished 3")));
    QVERIFY(TestPictures::AreEqual(probe.last, probe.ExpectedFor(RandomTargets(3))));
}

void TestKVGpuService::RequestsOfOthersAreNotLost()
{
    ServiceProbe probe;
    const QObject other;
    probe.state->isHeld = true;
    probe.Ask(&other);
    QTRY_COMPARE_WITH_TIMEOUT(probe.state->begun.load(), 1, TimeoutMs);
    probe.Ask(this);
    probe.Ask();
    probe.Ask(this);
    probe.state->isHeld = false;
    // The fourth takes the place of the second, before the third.
    QTRY_COMPARE_WITH_TIMEOUT(probe.said.size(), 4, TimeoutMs);
    probe.said.removeOne(QStringLiteral("dropped 2"));
    QCOMPARE(probe.said, QStringList({QStringLiteral("finished 1"), QStringLiteral("finished 4"),
                                      QStringLiteral("finished 3")}));
}

void TestKVGpuService::ALateAnswerIsNotGiven()
{
    ServiceProbe probe;
    probe.Ask(this);
    // Without a filter the pictures are released after the answer, which waits for the event loop by then.
    while (probe.state->released == 0)
        QThread::yieldCurrentThread();
    probe.Ask(this, RandomTargets(2));
    QTRY_COMPARE_WITH_TIMEOUT(
        probe.said, QStringList({QStringLiteral("dropped 1"), QStringLiteral("finished 2")}), TimeoutMs);
    QVERIFY(TestPictures::AreEqual(probe.last, probe.ExpectedFor(RandomTargets(2))));
}

void TestKVGpuService::CancellingDropsAtOnce()
{
    ServiceProbe probe;
    const QObject other;
    probe.state->isHeld = true;
    const quint64 atWork = probe.Ask(this);
    QTRY_COMPARE_WITH_TIMEOUT(probe.state->begun.load(), 1, TimeoutMs);
    const quint64 waiting = probe.Ask(&other);
    probe.service->cancel(waiting);
    QCOMPARE(probe.said, QStringList{QStringLiteral("dropped 2")});
    probe.service->cancel(atWork);
    QCOMPARE(probe.said.last(), QStringLiteral("dropped 1"));
    probe.service->cancel(atWork);
    probe.service->cancel(0);
    probe.service->cancel(99);
    probe.state->isHeld = false;
    probe.Ask(this);
    QTRY_COMPARE_WITH_TIMEOUT(probe.said.last(), QStringLiteral("finished 3"), TimeoutMs);
    QCOMPARE(probe.said.size(), 3);
}

void TestKVGpuService::ARequesterTakesItsRequestAlong()
{
    ServiceProbe probe;
    probe.state->isHeld = true;
    auto requester = std::make_unique<QObject>();
    probe.Ask(requester.get());
    QTRY_COMPARE_WITH_TIMEOUT(probe.state->begun.load(), 1, TimeoutMs);
    probe.Ask(requester.get());
    requester.reset();
    QCOMPARE(probe.said, QStringList({QStringLiteral("dropped 1"), QStringLiteral("dropped 2")}));
    probe.Ask(this);
    probe.state->isHeld = false;
    QTRY_COMPARE_WITH_TIMEOUT(probe.said.last(), QStringLiteral("finished 3"), TimeoutMs);
    QCOMPARE(probe.said.size(), 3);
}

void TestKVGpuService::KnowsTheRequestOfAnAnswerAlone()
{
    ServiceProbe probe;
    const quint64 request = probe.Ask(this);
    QTRY_COMPARE_WITH_TIMEOUT(probe.said.size(), 1, TimeoutMs);
    QCOMPARE(probe.service->request_of(probe.last), request);
    QCOMPARE(probe.service->request_of(probe.last.DeepCopy()), quint64(0));
    QCOMPARE(probe.service->request_of(probe.source), quint64(0));
    QCOMPARE(probe.service->request_of(RGBA32iImage()), quint64(0));
    const RGBA32iImage first = probe.last;
    QCOMPARE(probe.Ask(this), request + 1);
    QTRY_COMPARE_WITH_TIMEOUT(probe.said.size(), 2, TimeoutMs);
    QCOMPARE(probe.service->request_of(first), request);
    QCOMPARE(probe.service->request_of(probe.last), request + 1);
}

void TestKVGpuService::TheProcessorDoesWhatTheDeviceFailsAt()
{
    const LoggedMessages warnings(QtWarningMsg);
    ServiceProbe probe;
    probe.state->fails = true;
    probe.service->begin_filter(Width, Height);
    for (int i = 1; i <= 5; ++i) {
        probe.Ask(this, RandomTargets(quint32(i)));
        QTRY_COMPARE_WITH_TIMEOUT(probe.said.size(), i, TimeoutMs);
        QCOMPARE(probe.said.last(), QStringLiteral("finished %1").arg(i));
        QVERIFY(TestPictures::AreEqual(probe.last, probe.ExpectedFor(RandomTargets(quint32(i)))));
    }
    probe.service->end_filter();
    QCOMPARE(probe.state->begun.load(), 1);
    QCOMPARE(warnings.All(), QStringList{QStringLiteral("Selective colours go on without a fake: it broke")});
}

void TestKVGpuService::AFailedDeviceIsTriedAgainWithTheNextFilter()
{
    const LoggedMessages warnings(QtWarningMsg);
    ServiceProbe probe;
    probe.state->fails = true;
    const auto runFilter = [&probe] {
        probe.service->begin_filter(Width, Height);
        probe.Ask();
        const int said = probe.said.size();
        QTRY_COMPARE_WITH_TIMEOUT(probe.said.size(), said + 1, TimeoutMs);
        probe.service->end_filter();
    };
    runFilter();
    QCOMPARE(probe.state->begun.load(), 1);
    probe.state->fails = false;
    runFilter();
    QCOMPARE(probe.state->begun.load(), 2);
    probe.state->fails = true;
    for (int i = 0; i < 5; ++i)
        runFilter();
    QCOMPARE(probe.state->begun.load(), 5); // three in a row are enough
    QCOMPARE(probe.said.filter(QStringLiteral("finished")).size(), 7);
    QCOMPARE(warnings.All().size(), 1);
}

void TestKVGpuService::ADeviceThatCannotBeginIsLeftAlone()
{
    const LoggedMessages warnings(QtWarningMsg);
    ServiceProbe probe;
    probe.state->cannotBegin = true;
    probe.service->begin_filter(Width, Height);
    QTRY_COMPARE_WITH_TIMEOUT(warnings.All().size(), 1, TimeoutMs);
    probe.Ask();
    QTRY_COMPARE_WITH_TIMEOUT(probe.said, QStringList{QStringLiteral("finished 1")}, TimeoutMs);
    QCOMPARE(probe.state->begun.load(), 0);
    QCOMPARE(warnings.All(),
             QStringList{QStringLiteral("Selective colours go on without a fake: it does not begin")});
}

void TestKVGpuService::PicturesAreKeptWhileAFilterIsActive()
{
    ServiceProbe probe;
    const auto released = [&probe] { return probe.state->released.load(); };
    const auto ask = [&probe] {
        probe.Ask();
        const int said = probe.said.size();
        QTRY_COMPARE_WITH_TIMEOUT(probe.said.size(), said + 1, TimeoutMs);
    };
    probe.service->end_filter(); // one too many
    probe.service->begin_filter(-5, std::numeric_limits<int>::max());
    QTRY_COMPARE_WITH_TIMEOUT(probe.state->prepared.load(), 1, TimeoutMs);
    probe.service->begin_filter(Width, Height);
    ask();
    probe.service->end_filter();
    ask(); // whatever was to be released would have been by now
    QCOMPARE(released(), 0);
    probe.service->end_filter();
    QTRY_COMPARE_WITH_TIMEOUT(released(), 1, TimeoutMs);
    probe.service->end_filter();
    ask();
    QTRY_COMPARE_WITH_TIMEOUT(released(), 2, TimeoutMs); // nobody keeps what is asked for without a filter
}

void TestKVGpuService::EndsWhileAtWork()
{
    ServiceProbe probe;
    const QObject other;
    probe.state->isHeld = true;
    probe.service->begin_filter(Width, Height);
    probe.Ask(this);
    QTRY_COMPARE_WITH_TIMEOUT(probe.state->begun.load(), 1, TimeoutMs);
    probe.Ask(&other);
    probe.Ask();
    probe.service.reset();
    QCOMPARE(probe.state->live.load(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(probe.said, QStringList());
    QCOMPARE(probe.source.SharedPixels().use_count(), 2L); // the picture's own, and the one just made
}

void TestKVGpuService::MayBeDeletedByWhoHearsOfAnAnswer()
{
    ServiceProbe probe;
    const QObject other;
    probe.Ask(this);
    probe.Ask(&other);
    probe.Ask();
    bool isDeleted = false;
    connect(probe.service.get(), &KVGpuService::finished, this, [&probe, &isDeleted] {
        isDeleted = true;
        probe.service.reset();
    });
    while (probe.state->begun < 3) // all answers wait for the event loop
        QThread::yieldCurrentThread();
    QTRY_VERIFY_WITH_TIMEOUT(isDeleted, TimeoutMs);
    QCOMPARE(probe.said, QStringList{QStringLiteral("finished 1")});
}

void TestKVGpuService::AnApplicationQuitsWhileAtWork()
{
    const QStringList environment{QStringLiteral("ADJUSTMENTGUI_GPU=any")};
    for (const char* mode : {"--quit-at-once", "--quit-from-the-event-loop"}) {
        const Child child(mode, environment);
        QVERIFY2(child.hasEnded, qPrintable(child.errors));
        QCOMPARE(child.output, QStringLiteral("asked"));
        QCOMPARE(child.errors, QString());
    }
}

void TestKVGpuService::NothingLeaksInTenThousandRequests()
{
    constexpr int Requests = 10000;
    constexpr int Burst = 4;
    const OpenClProbe openCl;
    QString problem;
    auto device = OpenClDevice::Find(OpenClProbe::Loaded(), GpuUse::Any, problem);
    QVERIFY2(device, qPrintable(problem));
    SelectiveColorsService service(std::move(device));
    int answers = 0;
    std::vector<std::weak_ptr<const unsigned char>> results;
    connect(&service, &SelectiveColorsService::dropped, this, [&answers] { ++answers; });
    connect(&service, &KVGpuService::finished, this, [&answers, &results](const RGBA32iImage& image) {
        ++answers;
        results.push_back(image.SharedPixels());
    });
    const RGBA32iImage source = TestPictures::Random(40, 30, 1);
    const RGBA32iImage mask = Mask(30, 20, 2);
    const QList<SelectiveParams> targets = RandomTargets(1);
    service.begin_filter(40, 30);
    for (int i = 0; i < Requests; ++i) {
        service.request_selective_color(source.SharedPixels(), 40, 30, targets, Mode::Absolute,
                                        i % 2 == 0 ? nullptr : mask.SharedPixels(), 30, 20, 5, 5,
                                        i % 100 == 0, i % 3 == 0 ? this : nullptr);
        while (i % Burst == 0 && answers < i)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QTRY_COMPARE_WITH_TIMEOUT(answers, Requests, TimeoutMs);
    QVERIFY(results.size() >= Requests / Burst);
    service.end_filter();
    constexpr int ContextQueueProgramKernel = 4;
    QTRY_COMPARE_WITH_TIMEOUT(OpenClProbe::LiveObjects(), ContextQueueProgramKernel, TimeoutMs);
    QVERIFY(std::all_of(results.begin(), results.end(), [](const auto& result) { return result.expired(); }));
    QTRY_COMPARE_WITH_TIMEOUT(source.SharedPixels().use_count(), 2L, TimeoutMs);
}

namespace {

constexpr const char* Organization = "adjustmentgui-tests";
constexpr const char* Application = "tst_KVGpuService";

int TellInstance()
{
    const SelectiveColorsService* const service = TheService();
    if (service)
        std::printf("device %s\n", qPrintable(service->device_name()));
    else
        std::puts("none");
    return 0;
}

/// Leaves three requests behind: at work, in the queue and perhaps answered.
bool AskForMuch(const QObject& first, const QObject& second)
{
    SelectiveColorsService* const service = TheService();
    if (!service)
        return false;
    const RGBA32iImage source = TestPictures::Grey(3000, 2000, 100);
    service->begin_filter(3000, 2000);
    for (const QObject* requester : {&first, &second, static_cast<const QObject*>(nullptr)})
        service->request_selective_color(source.SharedPixels(), 3000, 2000, RandomTargets(1), Mode::Relative,
                                         nullptr, 0, 0, 0, 0, false, requester);
    std::puts("asked");
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setOrganizationName(QString::fromLatin1(Organization));
    QCoreApplication::setApplicationName(QString::fromLatin1(Application));
    QCoreApplication application(argc, argv);
    const QByteArray mode(argc > 1 ? argv[1] : "");
    if (mode == "--instance")
        return TellInstance();
    if (mode.startsWith("--quit")) {
        const QObject first;
        const QObject second;
        if (!AskForMuch(first, second))
            return 1;
        if (mode == "--quit-at-once")
            return 0;
        QTimer::singleShot(1, &application, &QCoreApplication::quit);
        return QCoreApplication::exec();
    }
    TestKVGpuService test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KVGpuService.moc"
