#include "OpenClProbe.h"
#include "SelectiveColorsCases.h"
#include "gpu/OpenClDevice.h"
#include "gpu/SelectiveColorsOnCpu.h"

#include <QtTest>

#include <functional>
#include <limits>
#include <optional>

Q_DECLARE_METATYPE(std::function<void()>)

using namespace SelectiveColorsCases;

namespace {

const std::atomic<bool> NeverAborted{false};

std::unique_ptr<OpenClDevice> MakeDevice()
{
    QString problem;
    auto device = OpenClDevice::Find(OpenClProbe::Loaded(), GpuUse::Any, problem);
    if (!device)
        qFatal("OpenCL has no device to test with (%s); `./dev install-deps` installs PoCL.",
               qPrintable(problem));
    return device;
}

SelectiveColorsJob JobOn(const RGBA32iImage& source)
{
    SelectiveColorsJob job;
    job.source = SharedPixels::Of(source);
    job.rule = SelectiveColorsRule(RandomTargets(7), Mode::Relative);
    return job;
}

/// What `adjust` makes of the job; empty where it fails.
RGBA32iImage Adjusted(OpenClDevice& device, const SelectiveColorsJob& job, QString* problem = nullptr)
{
    const RGBA32iImage result(job.source.width, job.source.height);
    const QString text = device.Adjust(job, result, NeverAborted);
    if (problem)
        *problem = text;
    return text.isEmpty() ? result : RGBA32iImage();
}

} // namespace

class TestOpenClDevice : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_probe.emplace(); }
    void cleanup() { m_probe.reset(); }

    void GivesTheBytesOfTheRule_data();
    void GivesTheBytesOfTheRule();
    void GivesTheBytesOfTheRuleForEachRange_data();
    void GivesTheBytesOfTheRuleForEachRange();
    void ReadsAMaskThatIsAPartOfALargerOne();
    void AMaskMayMoveBetweenJobs();
    void AMaskMayBeThePictureItself();
    void SendsAPictureOnceUntilItIsReleased();
    void SendsAPictureAnewWhenItsContentIsNew();
    void KeepsNoBorrowedPictures();
    void KeepsFewPictures();
    void FailsWithAReason_data();
    void FailsWithAReason();
    void MakesRoomByReleasingOtherPictures();
    void StopsWhenItIsAborted_data();
    void StopsWhenItIsAborted();
    void RefusesRowsLongerThanItsBuffers();
    void TellsWhatTheCompilerSays();
    void FindsNoDeviceWithoutDrivers();
    void FindsNoGraphicsCardInTheProcessor();
    void LoadsOnlyWholeLibraries();

private:
    std::optional<OpenClProbe> m_probe;
};

void TestOpenClDevice::GivesTheBytesOfTheRule_data()
{
    constexpr int Lowest = std::numeric_limits<int>::min();
    constexpr int Highest = std::numeric_limits<int>::max();
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("maskSize"); // null: no mask
    QTest::addColumn<QPoint>("offset");
    const auto row = [](const char* name, QSize size, QSize maskSize, QPoint offset) {
        QTest::newRow(name) << size << maskSize << offset;
    };
    row("one pixel", {1, 1}, {}, {});
    row("odd", {301, 57}, {}, {});
    row("even", {256, 64}, {}, {});
    row("one column", {1, 333}, {}, {});
    row("one row", {1031, 1}, {}, {});
    row("mask of the picture's size", {301, 57}, {301, 57}, {});
    row("mask inside", {301, 157}, {99, 40}, {13, 21});
    row("mask beyond the lower right", {301, 57}, {200, 50}, {201, 30});
    row("mask beyond the upper left", {301, 57}, {200, 50}, {-150, -31});
    row("mask on all sides", {129, 57}, {400, 300}, {-100, -90});
    row("mask of one pixel", {129, 57}, {1, 1}, {128, 56});
    row("mask beside the picture", {129, 57}, {40, 40}, {129, 0});
    row("mask above the picture", {129, 57}, {40, 40}, {0, -40});
    row("mask as far up and left as can be", {129, 57}, {40, 40}, {Lowest, Lowest});
    row("mask as far down and right as can be", {129, 57}, {40, 40}, {Highest, Highest});
}

void TestOpenClDevice::GivesTheBytesOfTheRule()
{
    QFETCH(QSize, size);
    QFETCH(QSize, maskSize);
    QFETCH(QPoint, offset);
    const RGBA32iImage source = TestPictures::Random(size.width(), size.height(), 3);
    const RGBA32iImage mask = Mask(maskSize.width(), maskSize.height(), 4);
    constexpr cl_ulong FewRows = 13 * 512 * 4; // so that bands begin and end in the midst of masks
    for (const bool sharesMemory : {true, false}) {
        for (const cl_ulong largestBuffer : {cl_ulong(0), FewRows}) {
            OpenClProbe::SetSharesMemory(sharesMemory);
            OpenClProbe::SetLargestBuffer(largestBuffer);
            const auto device = MakeDevice();
            for (const Mode mode : {Mode::Relative, Mode::Absolute}) {
                SelectiveColorsJob job = JobOn(source);
                job.rule = SelectiveColorsRule(RandomTargets(quint32(11 + mode)), mode);
                job.mask = SharedPixels::Of(mask);
                job.maskX = offset.x();
                job.maskY = offset.y();
                if (mask.RowLength() * 4 > int(FewRows) || source.RowLength() * 4 > int(FewRows))
                    QFAIL("a row has to fit into the smallest buffer");
                QString problem;
                const RGBA32iImage result = Adjusted(*device, job, &problem);
                QCOMPARE(problem, QString());
                QVERIFY(TestPictures::AreEqual(result, Expected(job)));
                const RGBA32iImage onCpu(job.source.width, job.source.height);
                QVERIFY(AdjustSelectiveColorsOnCpu(job, onCpu, NeverAborted));
                QVERIFY(TestPictures::AreEqual(result, onCpu));
            }
        }
    }
    QCOMPARE(OpenClProbe::LiveObjects(), 0);
}

void TestOpenClDevice::GivesTheBytesOfTheRuleForEachRange_data()
{
    QTest::addColumn<int>("range");
    for (int range = 0; range < SelectiveParamsList::Ranges; ++range)
        QTest::addRow("range %d", range) << range;
}

void TestOpenClDevice::GivesTheBytesOfTheRuleForEachRange()
{
    QFETCH(int, range);
    const RGBA32iImage source = TestPictures::Random(512, 200, 5);
    const auto device = MakeDevice();
    for (const Mode mode : {Mode::Relative, Mode::Absolute}) {
        for (const SelectiveParams& params :
             {SelectiveParams{100, -37, 61, 0}, SelectiveParams{-100, 0, 3, 100},
              SelectiveParams{0, 50, -50, -100}, SelectiveParams{100, 100, 100, 100}}) {
            QList<SelectiveParams> targets = SelectiveParamsList().targets;
            targets[range] = params;
            SelectiveColorsJob job = JobOn(source);
            job.rule = SelectiveColorsRule(targets, mode);
            QVERIFY(TestPictures::AreEqual(Adjusted(*device, job), Expected(job)));
        }
    }
}

void TestOpenClDevice::ReadsAMaskThatIsAPartOfALargerOne()
{
    const RGBA32iImage source = TestPictures::Random(300, 80, 3);
    const RGBA32iImage mask = Mask(500, 90, 4);
    constexpr int FirstRow = 17;
    for (const bool sharesMemory : {true, false}) {
        OpenClProbe::SetSharesMemory(sharesMemory);
        const auto device = MakeDevice();
        for (const int firstColumn : {0, 5, 16, 128, 400}) {
            SelectiveColorsJob job = JobOn(source);
            const auto* const start =
                reinterpret_cast<const unsigned char*>(mask.Row(FirstRow) + firstColumn);
            job.mask = {{mask.SharedPixels(), start},
                        mask.Width() - firstColumn,
                        mask.Height() - FirstRow,
                        mask.RowLength()};
            job.maskX = -9;
            job.maskY = 20;
            QVERIFY(TestPictures::AreEqual(Adjusted(*device, job), Expected(job)));
        }
    }
}

void TestOpenClDevice::AMaskMayMoveBetweenJobs()
{
    const RGBA32iImage source = TestPictures::Random(300, 80, 3);
    const RGBA32iImage mask = Mask(100, 60, 4);
    for (const bool sharesMemory : {true, false}) {
        OpenClProbe::SetSharesMemory(sharesMemory);
        const auto device = MakeDevice();
        int most = 0;
        for (int y = -70; y < 90; y += 7) {
            SelectiveColorsJob job = JobOn(source);
            job.mask = SharedPixels::Of(mask);
            job.maskX = y;
            job.maskY = y;
            QVERIFY(TestPictures::AreEqual(Adjusted(*device, job), Expected(job)));
            most = std::max(most, OpenClProbe::LiveObjects());
        }
        QVERIFY2(most <= 10, qPrintable(QString::number(most))); // no piece of the mask stays behind
    }
}

void TestOpenClDevice::AMaskMayBeThePictureItself()
{
    const RGBA32iImage picture = Mask(60, 50, 17);
    for (const bool sharesMemory : {true, false}) {
        OpenClProbe::SetSharesMemory(sharesMemory);
        const auto device = MakeDevice();
        for (const int y : {0, 11, -9, 0}) {
            SelectiveColorsJob job = JobOn(picture);
            job.mask = job.source;
            job.maskX = 7;
            job.maskY = y;
            QVERIFY2(TestPictures::AreEqual(Adjusted(*device, job), Expected(job)),
                     qPrintable(QStringLiteral("mask at %1").arg(y)));
        }
    }
    QCOMPARE(OpenClProbe::LiveObjects(), 0);
}

void TestOpenClDevice::SendsAPictureOnceUntilItIsReleased()
{
    OpenClProbe::SetSharesMemory(false);
    const RGBA32iImage source = TestPictures::Random(300, 80, 3);
    const RGBA32iImage mask = Mask(300, 80, 4);
    const auto device = MakeDevice();
    SelectiveColorsJob job = JobOn(source);
    job.mask = SharedPixels::Of(mask);
    const auto sent = [] { return OpenClProbe::CallsOf<&OpenClLibrary::enqueueWriteBuffer>(); };
    const int before = sent();
    for (int i = 0; i < 3; ++i)
        QVERIFY(!Adjusted(*device, job).IsEmpty());
    QCOMPARE(sent() - before, 2);
    device->ReleasePictures();
    QVERIFY(!Adjusted(*device, job).IsEmpty());
    QCOMPARE(sent() - before, 4);
}

void TestOpenClDevice::SendsAPictureAnewWhenItsContentIsNew()
{
    for (const bool sharesMemory : {true, false}) {
        OpenClProbe::SetSharesMemory(sharesMemory);
        const RGBA32iImage source = TestPictures::Random(300, 80, 3);
        const auto device = MakeDevice();
        SelectiveColorsJob job = JobOn(source);
        QVERIFY(TestPictures::AreEqual(Adjusted(*device, job), Expected(job)));
        const RGBA32iImage other = TestPictures::Random(300, 80, 4);
        for (int y = 0; y < 80; ++y)
            std::copy_n(other.Row(y), 300, source.Row(y));
        job.isContentNew = true;
        QVERIFY(TestPictures::AreEqual(Adjusted(*device, job), Expected(job)));
    }
}

void TestOpenClDevice::KeepsNoBorrowedPictures()
{
    for (const bool sharesMemory : {true, false}) {
        OpenClProbe::SetSharesMemory(sharesMemory);
        const RGBA32iImage source = TestPictures::Random(300, 80, 3);
        const RGBA32iImage mask = Mask(300, 80, 4);
        const auto device = MakeDevice();
        SelectiveColorsJob job = JobOn(source);
        job.mask = SharedPixels::Of(mask);
        const long before = job.source.handle.use_count();
        job.isBorrowed = true;
        QVERIFY(TestPictures::AreEqual(Adjusted(*device, job), Expected(job)));
        QCOMPARE(job.source.handle.use_count(), before);
        job.isBorrowed = false;
        QVERIFY(!Adjusted(*device, job).IsEmpty());
        QVERIFY(job.source.handle.use_count() > before);
    }
}

void TestOpenClDevice::KeepsFewPictures()
{
    const auto device = MakeDevice();
    std::vector<std::weak_ptr<const unsigned char>> sources;
    for (int i = 0; i < 10; ++i) {
        const RGBA32iImage source = TestPictures::Random(64, 64, quint32(i));
        QVERIFY(!Adjusted(*device, JobOn(source)).IsEmpty());
        sources.push_back(source.SharedPixels());
    }
    const auto kept =
        std::count_if(sources.begin(), sources.end(), [](const auto& source) { return !source.expired(); });
    QCOMPARE(int(kept), 4);
    QVERIFY(!sources.back().expired());
    device->ReleasePictures();
    QVERIFY(std::all_of(sources.begin(), sources.end(), [](const auto& source) { return source.expired(); }));
}

void TestOpenClDevice::FailsWithAReason_data()
{
    QTest::addColumn<bool>("sharesMemory");
    QTest::addColumn<std::function<void()>>("fail");
    QTest::addColumn<QString>("call");
    const auto row = [](bool sharesMemory, const char* call, std::function<void()> fail) {
        QTest::addRow("%s, %s", call, sharesMemory ? "shared memory" : "memory of its own")
            << sharesMemory << std::move(fail) << QString::fromLatin1(call);
    };
    using Cl = OpenClLibrary;
    for (const bool shares : {true, false}) {
        row(shares, "clCreateContext", [] { OpenClProbe::Fail<&Cl::createContext>(); });
        row(shares, "clCreateCommandQueue", [] { OpenClProbe::Fail<&Cl::createCommandQueue>(); });
        row(shares, "clCreateProgramWithSource", [] { OpenClProbe::Fail<&Cl::createProgramWithSource>(); });
        row(shares, "clBuildProgram", [] { OpenClProbe::Fail<&Cl::buildProgram>(); });
        row(shares, "clCreateKernel", [] { OpenClProbe::Fail<&Cl::createKernel>(); });
        for (int first = 0; first < 6; ++first)
            row(shares, "clCreateBuffer", [first] { OpenClProbe::Fail<&Cl::createBuffer>(first); });
        row(shares, "clSetKernelArg", [] { OpenClProbe::Fail<&Cl::setKernelArg>(); });
        row(shares, "clEnqueueNDRangeKernel", [] { OpenClProbe::Fail<&Cl::enqueueNDRangeKernel>(); });
        row(shares, "clEnqueueNDRangeKernel", [] { OpenClProbe::Fail<&Cl::enqueueNDRangeKernel>(2); });
        row(shares, "clEnqueueMapBuffer", [] { OpenClProbe::Fail<&Cl::enqueueMapBuffer>(); });
        row(shares, "clEnqueueMapBuffer", [] { OpenClProbe::Fail<&Cl::enqueueMapBuffer>(1); });
        row(shares, "clFinish", [] { OpenClProbe::Fail<&Cl::finish>(); });
    }
    row(true, "clEnqueueUnmapMemObject", [] { OpenClProbe::Fail<&Cl::enqueueUnmapMemObject>(); });
    row(false, "clEnqueueWriteBuffer", [] { OpenClProbe::Fail<&Cl::enqueueWriteBuffer>(); });
    row(false, "clEnqueueReadBuffer", [] { OpenClProbe::Fail<&Cl::enqueueReadBuffer>(); });
    row(false, "clEnqueueReadBuffer", [] { OpenClProbe::Fail<&Cl::enqueueReadBuffer>(2); });
    row(false, "clFlush", [] { OpenClProbe::Fail<&Cl::flush>(); });
    row(false, "clWaitForEvents", [] { OpenClProbe::Fail<&Cl::waitForEvents>(); });
}

void TestOpenClDevice::FailsWithAReason()
{
    QFETCH(bool, sharesMemory);
    QFETCH(std::function<void()>, fail);
    QFETCH(QString, call);
    OpenClProbe::SetSharesMemory(sharesMemory);
    OpenClProbe::SetLargestBuffer(512 * 4 * 16); // several bands
    const RGBA32iImage source = TestPictures::Random(300, 80, 3);
    const RGBA32iImage mask = Mask(300, 80, 4);
    const auto device = MakeDevice();
    SelectiveColorsJob job = JobOn(source);
    job.mask = SharedPixels::Of(mask);
    fail();
    QString problem;
    Adjusted(*device, job, &problem);
    QVERIFY2(problem.startsWith(call), qPrintable(problem));
    QVERIFY2(problem.contains(QStringLiteral("(-5)")), qPrintable(problem));

    OpenClProbe::FailNothing();
    device->Reset();
    QCOMPARE(OpenClProbe::LiveObjects(), 0);
    QVERIFY(TestPictures::AreEqual(Adjusted(*device, job), Expected(job)));
}

void TestOpenClDevice::MakesRoomByReleasingOtherPictures()
{
    const auto device = MakeDevice();
    const RGBA32iImage first = TestPictures::Random(64, 64, 1);
    const RGBA32iImage second = TestPictures::Random(64, 64, 2);
    QVERIFY(!Adjusted(*device, JobOn(first)).IsEmpty());
    const std::weak_ptr<const unsigned char> kept = first.SharedPixels();
    OpenClProbe::Fail<&OpenClLibrary::createBuffer>();
    QString problem;
    Adjusted(*device, JobOn(second), &problem);
    QVERIFY(!problem.isEmpty());
    QCOMPARE(kept.use_count(), 1L); // the picture's own
}

void TestOpenClDevice::StopsWhenItIsAborted_data()
{
    QTest::addColumn<bool>("sharesMemory");
    QTest::newRow("shared memory") << true;
    QTest::newRow("memory of its own") << false;
}

void TestOpenClDevice::StopsWhenItIsAborted()
{
    QFETCH(bool, sharesMemory);
    OpenClProbe::SetSharesMemory(sharesMemory);
    const auto device = MakeDevice();
    const RGBA32iImage source = TestPictures::Random(300, 80, 3);
    const std::atomic<bool> aborted{true};
    const int before = OpenClProbe::CallsOf<&OpenClLibrary::enqueueNDRangeKernel>();
    QCOMPARE(device->Adjust(JobOn(source), RGBA32iImage(300, 80), aborted), QString());
    QCOMPARE(OpenClProbe::CallsOf<&OpenClLibrary::enqueueNDRangeKernel>(), before);
    QVERIFY(TestPictures::AreEqual(Adjusted(*device, JobOn(source)), Expected(JobOn(source))));
}

void TestOpenClDevice::RefusesRowsLongerThanItsBuffers()
{
    OpenClProbe::SetLargestBuffer(128 * 4 - 1);
    const auto device = MakeDevice();
    QString problem;
    Adjusted(*device, JobOn(TestPictures::Random(100, 3, 1)), &problem);
    QVERIFY2(problem.contains(QStringLiteral("row")), qPrintable(problem));
}

void TestOpenClDevice::TellsWhatTheCompilerSays()
{
    auto library = std::make_shared<OpenClLibrary>(*OpenClProbe::Loaded());
    library->buildProgram = [](cl_program, cl_uint, const cl_device_id*, const char*,
                               void(CL_CALLBACK*)(cl_program, void*),
                               void*) -> cl_int { return CL_BUILD_PROGRAM_FAILURE; };
    library->getProgramBuildInfo = [](cl_program, cl_device_id, cl_program_build_info, std::size_t size,
                                      void* text, std::size_t* neededSize) -> cl_int {
        static const char Log[] = "line 3: what is this?";
        if (neededSize)
            *neededSize = sizeof(Log);
        if (text)
            std::memcpy(text, Log, std::min(size, sizeof(Log)));
        return CL_SUCCESS;
    };
    QString problem;
    const auto device = OpenClDevice::Find(library, GpuUse::Any, problem);
    QVERIFY(device);
    QVERIFY(device->Prepare().endsWith(QStringLiteral("line 3: what is this?")));
}

void TestOpenClDevice::FindsNoDeviceWithoutDrivers()
{
    OpenClProbe::Fail<&OpenClLibrary::getPlatformIds>();
    QString problem;
    QVERIFY(!OpenClDevice::Find(OpenClProbe::Loaded(), GpuUse::Any, problem));
    QVERIFY(problem.startsWith(QStringLiteral("clGetPlatformIDs")));
}

void TestOpenClDevice::FindsNoGraphicsCardInTheProcessor()
{
    auto library = std::make_shared<OpenClLibrary>(*OpenClProbe::Loaded());
    library->getDeviceIds = [](cl_platform_id, cl_device_type type, cl_uint, cl_device_id* devices,
                               cl_uint* count) -> cl_int {
        if (type == CL_DEVICE_TYPE_GPU)
            return CL_DEVICE_NOT_FOUND;
        *devices = nullptr;
        *count = 0;
        return CL_SUCCESS;
    };
    for (const GpuUse use : {GpuUse::Auto, GpuUse::Any, GpuUse::Off}) {
        QString problem;
        QVERIFY(!OpenClDevice::Find(library, use, problem));
        QVERIFY(!problem.isEmpty());
    }
}

void TestOpenClDevice::LoadsOnlyWholeLibraries()
{
    QString problem;
    QVERIFY(!OpenClLibrary::Load(QStringLiteral("libNoSuchOpenCL.so.1"), problem));
    QVERIFY2(problem.contains(QStringLiteral("libNoSuchOpenCL")), qPrintable(problem));
    problem.clear();
    QVERIFY(!OpenClLibrary::Load(QStringLiteral("libm.so.6"), problem));
    QVERIFY2(problem.contains(QStringLiteral("has no cl")), qPrintable(problem));
}

QTEST_GUILESS_MAIN(TestOpenClDevice)
#include "tst_OpenClDevice.moc"
