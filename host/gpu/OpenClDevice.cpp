#include "gpu/OpenClDevice.h"

#include "gpu/OpenClBands.h"
#include "gpu/OpenClProblem.h"
#include "gpu/OpenClRun.h"
#include "gpu/OpenClSession.h"
#include "gpu/OpenClStaging.h"

#include <QByteArray>

#include <algorithm>
#include <vector>

namespace {

/// Picture and mask of two filters at once.
constexpr std::size_t MostKept = 4;

std::vector<cl_platform_id> Platforms(const OpenClLibrary& library, QString& problem)
{
    constexpr cl_uint MostPlatforms = 64;
    std::vector<cl_platform_id> platforms(MostPlatforms);
    cl_uint count = 0;
    const cl_int status = library.getPlatformIds(MostPlatforms, platforms.data(), &count);
    problem = OpenClProblem("clGetPlatformIDs", status);
    platforms.resize(status == CL_SUCCESS ? std::min(count, MostPlatforms) : 0);
    return platforms;
}

std::vector<cl_device_id> Devices(const OpenClLibrary& library, cl_platform_id platform, cl_device_type type)
{
    constexpr cl_uint MostDevices = 64;
    std::vector<cl_device_id> devices(MostDevices);
    cl_uint count = 0;
    const cl_int status = library.getDeviceIds(platform, type, MostDevices, devices.data(), &count);
    devices.resize(status == CL_SUCCESS ? std::min(count, MostDevices) : 0);
    return devices;
}

bool Says(const OpenClLibrary& library, cl_device_id device, cl_device_info what)
{
    cl_bool answer = CL_FALSE;
    return library.getDeviceInfo(device, what, sizeof(answer), &answer, nullptr) == CL_SUCCESS &&
           answer == CL_TRUE;
}

/// Whether programs can be built for `device`, and pixels mean the same to it.
bool IsUsable(const OpenClLibrary& library, cl_device_id device)
{
    return Says(library, device, CL_DEVICE_AVAILABLE) &&
           Says(library, device, CL_DEVICE_COMPILER_AVAILABLE) &&
           Says(library, device, CL_DEVICE_ENDIAN_LITTLE);
}

QString NameOf(const OpenClLibrary& library, cl_device_id device)
{
    constexpr std::size_t MostBytes = 256;
    QByteArray name(MostBytes, '\0');
    if (library.getDeviceInfo(device, CL_DEVICE_NAME, MostBytes - 1, name.data(), nullptr) != CL_SUCCESS)
        return QStringLiteral("OpenCL");
    return QString::fromUtf8(name.constData()).trimmed();
}

cl_device_id FirstUsable(const OpenClLibrary& library, const std::vector<cl_platform_id>& platforms,
                         cl_device_type type)
{
    for (const cl_platform_id platform : platforms)
        for (const cl_device_id device : Devices(library, platform, type))
            if (IsUsable(library, device))
                return device;
    return nullptr;
}

void CopyRows(const SharedPixels& from, const RGBA32iImage& to, int top, int bottom)
{
    if (top < bottom)
        PixelBuffer::CopyRows(from.Row(top), from.BytesPerLine(), to.Row(top), to.BytesPerLine(),
                              to.Width() * qsizetype(sizeof(YDRGBA32i)), bottom - top);
}

/// The rows above and below what the device is to write.
void CopyUnreached(const SelectiveColorsJob& job, const RGBA32iImage& result)
{
    const QRect reached = job.Reached();
    CopyRows(job.source, result, 0, reached.top());
    CopyRows(job.source, result, reached.bottom() + 1, result.Height());
}

} // namespace

std::unique_ptr<OpenClDevice> OpenClDevice::Find(std::shared_ptr<const OpenClLibrary> library, GpuUse use,
                                                 QString& problem)
{
    if (use == GpuUse::Off) {
        problem = QStringLiteral("no device is to be used");
        return nullptr;
    }
    const std::vector<cl_platform_id> platforms = Platforms(*library, problem);
    if (!problem.isEmpty())
        return nullptr;
    cl_device_id device = FirstUsable(*library, platforms, CL_DEVICE_TYPE_GPU);
    if (!device && use == GpuUse::Any)
        device = FirstUsable(*library, platforms, CL_DEVICE_TYPE_ALL);
    if (!device) {
        problem = QStringLiteral("no driver offers a device that can be used");
        return nullptr;
    }
    const QString name = NameOf(*library, device);
    return std::unique_ptr<OpenClDevice>(new OpenClDevice(std::move(library), device, name));
}

OpenClDevice::OpenClDevice(std::shared_ptr<const OpenClLibrary> library, cl_device_id device,
                           const QString& name)
    : m_library(std::move(library)), m_device(device), m_name(name)
{}

OpenClDevice::~OpenClDevice() = default;

QString OpenClDevice::Prepare()
{
    QString problem;
    if (!m_session)
        m_session = OpenClSession::Open(m_library, m_device, problem);
    return problem;
}

QString OpenClDevice::Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                             const std::atomic<bool>& abort)
{
    QString problem = Prepare();
    if (!problem.isEmpty())
        return problem;
    if (job.isContentNew) {
        Forget(job.source);
        Forget(job.mask);
    }
    const std::size_t needed = job.HasMask() ? 2 : 1;
    problem = AdjustOnce(job, result, abort);
    if (!problem.isEmpty() && m_kept.size() > needed) {
        ReleasePictures(); // those of other filters may be all that there was no room for
        problem = AdjustOnce(job, result, abort);
    }
    if (job.isBorrowed) {
        Forget(job.source);
        Forget(job.mask);
    }
    return problem;
}

QString OpenClDevice::AdjustOnce(const SelectiveColorsJob& job, const RGBA32iImage& result,
                                 const std::atomic<bool>& abort)
{
    OpenClBands* const mask = job.HasMask() ? &Kept(job.mask, nullptr) : nullptr;
    OpenClBands& source = Kept(job.source, mask);
    CopyUnreached(job, result);
    QString problem = OpenClRun(*m_session, job, result, source, mask).Run(m_staging, abort);
    if (!problem.isEmpty() || abort.load(std::memory_order_relaxed))
        m_staging.reset(); // what is on its way in it belongs to a result that nobody waits for
    const QString unfinished = m_session->Finish();
    if (problem.isEmpty())
        problem = unfinished;
    while (m_kept.size() > MostKept)
        m_kept.pop_back();
    return problem;
}

/// What was sent of `pixels` so far, moved to the front. Not `taken`, which is cut into other bands: a mask
/// may be the picture itself.
OpenClBands& OpenClDevice::Kept(const SharedPixels& pixels, const OpenClBands* taken)
{
    const auto known = std::find_if(m_kept.begin(), m_kept.end(), [&](const OpenClBands& bands) {
        return &bands != taken && bands.Pixels().IsSameAs(pixels);
    });
    if (known == m_kept.end())
        m_kept.emplace_front(*m_session, pixels);
    else
        m_kept.splice(m_kept.begin(), m_kept, known);
    return m_kept.front();
}

void OpenClDevice::Forget(const SharedPixels& pixels)
{
    m_kept.remove_if([&pixels](const OpenClBands& bands) { return bands.Pixels().IsSameAs(pixels); });
}

void OpenClDevice::ReleasePictures()
{
    m_staging.reset();
    m_kept.clear();
}

void OpenClDevice::Reset()
{
    ReleasePictures();
    m_session.reset();
}
