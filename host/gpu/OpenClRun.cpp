#include "gpu/OpenClRun.h"

#include "gpu/OpenClBands.h"
#include "gpu/OpenClProblem.h"
#include "gpu/OpenClSession.h"
#include "gpu/OpenClStaging.h"

#include <algorithm>

namespace {

/// Bands short enough that carrying one overlaps with copying another, and long enough that starting one
/// does not count.
constexpr qint64 StagedBytes = qint64(8) << 20;
/// Rows begin at multiples of 512 bytes, so that so many are whole pages, which drivers can use in place.
constexpr int PageRows = 8;

/// Hands `values` to the kernel, the first as argument 0. CL_SUCCESS, or the first failure.
template <class... Values>
cl_int SetArguments(const OpenClSession& session, const Values&... values)
{
    cl_uint index = 0;
    cl_int status = CL_SUCCESS;
    const auto set = [&](std::size_t size, const void* value) {
        if (status == CL_SUCCESS)
            status = session.OpenCl().setKernelArg(session.Kernel(), index++, size, value);
    };
    (set(sizeof(values), &values), ...); // NOLINT(bugprone-sizeof-expression): handles are passed as they are
    return status;
}

} // namespace

OpenClRun::OpenClRun(const OpenClSession& session, const SelectiveColorsJob& job, const RGBA32iImage& result,
                     OpenClBands& source, OpenClBands* mask)
    : m_session(session), m_job(job), m_result(result), m_source(source), m_mask(mask),
      m_reached(job.Reached())
{}

QString OpenClRun::Run(std::unique_ptr<OpenClStaging>& staging, const std::atomic<bool>& abort)
{
    if (m_reached.isEmpty())
        return {};
    const int rows = RowsPerBand();
    if (rows < 1)
        return QStringLiteral("a row of the picture is longer than the device's buffers");
    QString problem = MakeShiftTable();
    const bool isStaged = !m_session.SharesMemory();
    const qint64 bytes = rows * m_result.BytesPerLine();
    if (isStaged && (!staging || staging->Bytes() < bytes)) {
        staging.reset(); // its memory may be what the new one needs
        staging = std::make_unique<OpenClStaging>(m_session, bytes);
    }
    // The same bands whatever is reached, so that what was sent for one job serves another.
    for (int first = m_reached.top() / rows * rows; problem.isEmpty() && first <= m_reached.bottom();
         first += rows) {
        if (abort.load(std::memory_order_relaxed))
            return {};
        const int top = std::max(first, m_reached.top());
        const int bottom = std::min(first + rows, m_reached.bottom() + 1);
        const Band band{first, std::min(rows, m_result.Height() - first), top, bottom - top};
        problem = isStaged ? RunStaged(band, *staging) : RunInPlace(band);
    }
    return problem.isEmpty() && isStaged ? staging->Collect() : problem;
}

/// 0 where a single row is too long.
int OpenClRun::RowsPerBand() const
{
    const qint64 row = std::max<qint64>(m_result.BytesPerLine(), m_mask ? m_job.mask.BytesPerLine() : 0);
    qint64 rows = m_session.LargestBuffer() / row;
    if (!m_session.SharesMemory())
        rows = std::min(rows, std::max<qint64>(StagedBytes / row, 1));
    if (rows > PageRows)
        rows -= rows % PageRows;
    return static_cast<int>(std::min<qint64>(rows, m_result.Height()));
}

QString OpenClRun::MakeShiftTable()
{
    QString problem;
    m_shift = m_session.MakeBuffer(CL_MEM_READ_ONLY | CL_MEM_COPY_HOST_PTR, sizeof(m_job.rule.shift),
                                   const_cast<qint32*>(&m_job.rule.shift[0][0]), problem);
    return problem;
}

QString OpenClRun::RunInPlace(const Band& band)
{
    const OpenClLibrary& library = m_session.OpenCl();
    const qint64 bytes = band.reached * m_result.BytesPerLine();
    QString problem;
    const OpenClHandle<cl_mem> rows =
        m_session.MakeBuffer(CL_MEM_WRITE_ONLY | CL_MEM_USE_HOST_PTR, bytes, m_result.Row(band.top), problem);
    if (!rows)
        return problem;
    problem = Launch(band, rows.Get());
    if (!problem.isEmpty())
        return problem;
    cl_int status = CL_SUCCESS;
    void* const mapped =
        library.enqueueMapBuffer(m_session.Queue(), rows.Get(), CL_TRUE, CL_MAP_READ, 0,
                                 static_cast<std::size_t>(bytes), 0, nullptr, nullptr, &status);
    if (status != CL_SUCCESS)
        return OpenClProblem("clEnqueueMapBuffer", status);
    status = library.enqueueUnmapMemObject(m_session.Queue(), rows.Get(), mapped, 0, nullptr, nullptr);
    if (status != CL_SUCCESS)
        return OpenClProblem("clEnqueueUnmapMemObject", status);
    return m_session.Finish();
}

QString OpenClRun::RunStaged(const Band& band, OpenClStaging& staging)
{
    QString problem;
    const cl_mem onDevice = staging.Next(problem);
    if (!onDevice)
        return problem;
    problem = Launch(band, onDevice);
    return problem.isEmpty() ? staging.Carry(m_result, band.top, band.reached) : problem;
}

QString OpenClRun::Launch(const Band& band, cl_mem result)
{
    QString problem;
    const cl_mem source = m_source.Rows(band.first, band.count, problem);
    if (!source)
        return problem;
    const bool hasMask = m_mask;
    const cl_mem mask = hasMask ? m_mask->Rows(band.top - m_job.maskY, band.reached, problem) : source;
    if (!mask)
        return problem;
    const cl_mem shift = m_shift.Get();
    cl_int status = SetArguments(
        m_session, source, cl_int(band.top - band.first), result, cl_int(m_result.Width()),
        cl_int(m_result.RowLength()), shift, cl_int(m_job.rule.relative), cl_int(m_reached.left()),
        cl_int(m_reached.right() + 1), mask, cl_int(hasMask ? m_reached.left() - m_job.maskX : 0),
        cl_int(hasMask ? m_job.mask.rowLength : 0), cl_int(hasMask));
    if (status != CL_SUCCESS)
        return OpenClProblem("clSetKernelArg", status);
    const std::size_t size[] = {static_cast<std::size_t>(m_result.RowLength()),
                                static_cast<std::size_t>(band.reached)};
    status = m_session.OpenCl().enqueueNDRangeKernel(m_session.Queue(), m_session.Kernel(), 2, nullptr, size,
                                                     nullptr, 0, nullptr, nullptr);
    return OpenClProblem("clEnqueueNDRangeKernel", status);
}
