#include "gpu/OpenClBands.h"

#include "gpu/OpenClProblem.h"
#include "gpu/OpenClSession.h"

#include <algorithm>

namespace {

/// What drivers ask of memory that they use in its place: whole cache lines.
constexpr qint64 CacheLine = 64;

bool IsAligned(const void* address) { return reinterpret_cast<quintptr>(address) % CacheLine == 0; }

} // namespace

cl_mem OpenClBands::Rows(qint64 first, qint64 count, QString& problem)
{
    const auto known = std::find_if(m_bands.cbegin(), m_bands.cend(), [=](const Band& band) {
        return band.first == first && band.count == count;
    });
    if (known != m_bands.cend())
        return known->buffer.Get();
    // Bands cut otherwise than before, as a mask's are once it has moved, replace those in their way.
    const auto isInTheWay = [=](const Band& band) {
        return band.first < first + count && first < band.first + band.count;
    };
    m_bands.erase(std::remove_if(m_bands.begin(), m_bands.end(), isInTheWay), m_bands.end());
    OpenClHandle<cl_mem> buffer = Send(first, count, problem);
    if (!buffer)
        return nullptr;
    m_bands.push_back({first, count, std::move(buffer)});
    return m_bands.back().buffer.Get();
}

OpenClHandle<cl_mem> OpenClBands::Send(qint64 first, qint64 count, QString& problem) const
{
    // The last row ends with its last pixel: the mask may be a part of a larger one.
    const qint64 bytes = (count - 1) * m_pixels.BytesPerLine() + m_pixels.width * qint64(sizeof(YDRGBA32i));
    auto* const rows = const_cast<YDRGBA32i*>(m_pixels.Row(first)); // the device only reads them
    if (m_session->SharesMemory() && IsAligned(rows) && m_pixels.BytesPerLine() % CacheLine == 0) {
        const qint64 wholeLines = (bytes + CacheLine - 1) / CacheLine * CacheLine;
        return m_session->MakeBuffer(CL_MEM_READ_ONLY | CL_MEM_USE_HOST_PTR, wholeLines, rows, problem);
    }
    OpenClHandle<cl_mem> buffer = m_session->MakeBuffer(CL_MEM_READ_ONLY, bytes, nullptr, problem);
    if (!buffer)
        return {};
    problem = OpenClProblem("clEnqueueWriteBuffer",
                            m_session->OpenCl().enqueueWriteBuffer(m_session->Queue(), buffer.Get(), CL_FALSE,
                                                                   0, static_cast<std::size_t>(bytes), rows,
                                                                   0, nullptr, nullptr));
    return problem.isEmpty() ? std::move(buffer) : OpenClHandle<cl_mem>();
}
