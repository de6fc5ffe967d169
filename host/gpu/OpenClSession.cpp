#include "gpu/OpenClSession.h"

#include "gpu/OpenClProblem.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>

namespace {

constexpr qint64 MostBytes = qint64(1) << 30; ///< pixels of a buffer are counted in an int
constexpr const char* KernelName = "AdjustSelectiveColors";

QByteArray ProgramText()
{
    QFile file(QStringLiteral(":/adjustmentgui/gpu/SelectiveColors.cl"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::unique_ptr<OpenClSession> OpenClSession::Open(std::shared_ptr<const OpenClLibrary> library,
                                                   cl_device_id device, QString& problem)
{
    std::unique_ptr<OpenClSession> session(new OpenClSession(std::move(library)));
    problem = session->MakeQueue(device);
    if (problem.isEmpty())
        problem = session->MakeKernel(device);
    if (!problem.isEmpty())
        return nullptr;
    session->ReadLimits(device);
    return session;
}

QString OpenClSession::MakeQueue(cl_device_id device)
{
    cl_int status = CL_SUCCESS;
    m_context = {m_library->createContext(nullptr, 1, &device, nullptr, nullptr, &status),
                 m_library->releaseContext};
    if (status != CL_SUCCESS)
        return OpenClProblem("clCreateContext", status);
    m_queue = {m_library->createCommandQueue(m_context.Get(), device, 0, &status),
               m_library->releaseCommandQueue};
    return OpenClProblem("clCreateCommandQueue", status);
}

QString OpenClSession::MakeKernel(cl_device_id device)
{
    const QByteArray text = ProgramText();
    const char* source = text.constData();
    const auto length = static_cast<std::size_t>(text.size());
    cl_int status = CL_SUCCESS;
    m_program = {m_library->createProgramWithSource(m_context.Get(), 1, &source, &length, &status),
                 m_library->releaseProgram};
    if (status != CL_SUCCESS)
        return OpenClProblem("clCreateProgramWithSource", status);
    status = m_library->buildProgram(m_program.Get(), 1, &device, "", nullptr, nullptr);
    if (status != CL_SUCCESS)
        return OpenClProblem("clBuildProgram", status) + BuildLog(device);
    m_kernel = {m_library->createKernel(m_program.Get(), KernelName, &status), m_library->releaseKernel};
    return OpenClProblem("clCreateKernel", status);
}

/// What the driver's compiler says, after a line break; empty where it says nothing.
QString OpenClSession::BuildLog(cl_device_id device) const
{
    constexpr std::size_t MostLogged = 1 << 16;
    std::size_t size = 0;
    if (m_library->getProgramBuildInfo(m_program.Get(), device, CL_PROGRAM_BUILD_LOG, 0, nullptr, &size) !=
            CL_SUCCESS ||
        size == 0 || size > MostLogged)
        return {};
    QByteArray log(static_cast<int>(size), '\0');
    if (m_library->getProgramBuildInfo(m_program.Get(), device, CL_PROGRAM_BUILD_LOG, size, log.data(),
                                       nullptr) != CL_SUCCESS)
        return {};
    return QLatin1Char('\n') + QString::fromUtf8(log.constData()).trimmed();
}

void OpenClSession::ReadLimits(cl_device_id device)
{
    cl_bool sharesMemory = CL_FALSE;
    if (m_library->getDeviceInfo(device, CL_DEVICE_HOST_UNIFIED_MEMORY, sizeof(sharesMemory), &sharesMemory,
                                 nullptr) == CL_SUCCESS)
        m_sharesMemory = sharesMemory == CL_TRUE;
    constexpr cl_ulong LeastByTheStandard = 128 << 20;
    cl_ulong bytes = LeastByTheStandard;
    if (m_library->getDeviceInfo(device, CL_DEVICE_MAX_MEM_ALLOC_SIZE, sizeof(bytes), &bytes, nullptr) !=
        CL_SUCCESS)
        bytes = LeastByTheStandard;
    m_largestBuffer = static_cast<qint64>(std::min<cl_ulong>(bytes, MostBytes));
}

OpenClHandle<cl_mem> OpenClSession::MakeBuffer(cl_mem_flags flags, qint64 bytes, void* host,
                                               QString& problem) const
{
    cl_int status = CL_SUCCESS;
    OpenClHandle<cl_mem> buffer(
        m_library->createBuffer(m_context.Get(), flags, static_cast<std::size_t>(bytes), host, &status),
        m_library->releaseMemObject);
    if (status == CL_SUCCESS)
        return buffer;
    problem = OpenClProblem("clCreateBuffer", status);
    return {};
}

QString OpenClSession::Finish() const { return OpenClProblem("clFinish", m_library->finish(Queue())); }
