#pragma once

#include "gpu/OpenClHandle.h"
#include "image/KVImage.h"

#include <QString>

#include <array>

class OpenClSession;

/// The way back for results on a device with memory of its own: each band is written to the device's memory,
/// carried to memory that the device can write to at full speed, and copied to the picture while the device
/// is busy with the next one.
class OpenClStaging
{
public:
    /// `session` outlives this. Bands have `bytes` bytes at most.
    OpenClStaging(const OpenClSession& session, qint64 bytes);
    ~OpenClStaging();
    OpenClStaging(const OpenClStaging&) = delete;
    OpenClStaging& operator=(const OpenClStaging&) = delete;

    qint64 Bytes() const { return m_bytes; }

    /// The memory on the device that the next band is to be written to, once what it held is in its picture;
    /// null, and why in `problem`, where that fails.
    cl_mem Next(QString& problem);
    /// Sends the rows [first, first + count) of `result`, which the queue writes to Next(), on their way.
    [[nodiscard]] QString Carry(const RGBA32iImage& result, int first, int count);
    /// Waits for what is on its way.
    [[nodiscard]] QString Collect();

private:
    struct Slot
    {
        OpenClHandle<cl_mem> onDevice;
        OpenClHandle<cl_mem> pinned;
        void* mapped = nullptr;
        OpenClHandle<cl_event> arrival;
        RGBA32iImage result;
        int first = 0;
        int count = 0;
    };

    bool Allocate(Slot& slot, QString& problem) const;
    QString Collect(Slot& slot) const;

    const OpenClSession& m_session;
    const qint64 m_bytes;
    std::array<Slot, 2> m_slots;
    std::size_t m_next = 0;
};
