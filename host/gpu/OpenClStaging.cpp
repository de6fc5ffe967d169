#include "gpu/OpenClStaging.h"

#include "gpu/OpenClProblem.h"
#include "gpu/OpenClSession.h"

OpenClStaging::OpenClStaging(const OpenClSession& session, qint64 bytes) : m_session(session), m_bytes(bytes)
{}

OpenClStaging::~OpenClStaging()
{
    for (Slot& slot : m_slots)
        if (slot.mapped)
            m_session.OpenCl().enqueueUnmapMemObject(m_session.Queue(), slot.pinned.Get(), slot.mapped, 0,
                                                     nullptr, nullptr);
    m_session.OpenCl().finish(m_session.Queue()); // the device may still write where the pictures are
}

cl_mem OpenClStaging::Next(QString& problem)
{
    Slot& slot = m_slots[m_next];
    if (!slot.mapped && !Allocate(slot, problem))
        return nullptr;
    problem = Collect(slot);
    return problem.isEmpty() ? slot.onDevice.Get() : nullptr;
}

bool OpenClStaging::Allocate(Slot& slot, QString& problem) const
{
    slot.onDevice = m_session.MakeBuffer(CL_MEM_WRITE_ONLY, m_bytes, nullptr, problem);
    if (!slot.onDevice)
        return false;
    slot.pinned = m_session.MakeBuffer(CL_MEM_READ_WRITE | CL_MEM_ALLOC_HOST_PTR, m_bytes, nullptr, problem);
    if (!slot.pinned)
        return false;
    cl_int status = CL_SUCCESS;
    slot.mapped = m_session.OpenCl().enqueueMapBuffer(
        m_session.Queue(), slot.pinned.Get(), CL_TRUE, CL_MAP_READ | CL_MAP_WRITE, 0,
        static_cast<std::size_t>(m_bytes), 0, nullptr, nullptr, &status);
    problem = OpenClProblem("clEnqueueMapBuffer", status);
    if (!problem.isEmpty())
        slot.mapped = nullptr;
    return slot.mapped;
}

QString OpenClStaging::Carry(const RGBA32iImage& result, int first, int count)
{
    const OpenClLibrary& library = m_session.OpenCl();
    Slot& slot = m_slots[m_next];
    m_next = (m_next + 1) % m_slots.size();
    cl_event arrival = nullptr;
    cl_int status = library.enqueueReadBuffer(m_session.Queue(), slot.onDevice.Get(), CL_FALSE, 0,
                                              static_cast<std::size_t>(count * result.BytesPerLine()),
                                              slot.mapped, 0, nullptr, &arrival);
    if (status != CL_SUCCESS)
        return OpenClProblem("clEnqueueReadBuffer", status);
    slot.arrival = {arrival, library.releaseEvent};
    slot.result = result;
    slot.first = first;
    slot.count = count;
    status = library.flush(m_session.Queue());
    return OpenClProblem("clFlush", status);
}

QString OpenClStaging::Collect()
{
    // The older one first: that is the one whose memory comes next.
    for (std::size_t i = 0; i < m_slots.size(); ++i) {
        const QString problem = Collect(m_slots[(m_next + i) % m_slots.size()]);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString OpenClStaging::Collect(Slot& slot) const
{
    const OpenClHandle<cl_event> arrival = std::move(slot.arrival);
    const RGBA32iImage result = slot.result;
    slot.result = RGBA32iImage();
    if (!arrival)
        return {};
    const cl_event event = arrival.Get();
    const cl_int status = m_session.OpenCl().waitForEvents(1, &event);
    if (status != CL_SUCCESS)
        return OpenClProblem("clWaitForEvents", status);
    PixelBuffer::CopyRows(slot.mapped, result.BytesPerLine(), result.Row(slot.first), result.BytesPerLine(),
                          result.Width() * qsizetype(sizeof(YDRGBA32i)), slot.count);
    return {};
}
