#pragma once

#include "gpu/OpenClHandle.h"
#include "gpu/OpenClLibrary.h"

#include <QString>

#include <memory>

/// A device made ready: its queue, which works in order, and its program.
///
/// Used by one thread at a time.
class OpenClSession
{
public:
    /// Makes `device` ready, which takes as long as the driver's compiler does. Null, and why in `problem`,
    /// where that fails.
    static std::unique_ptr<OpenClSession> Open(std::shared_ptr<const OpenClLibrary> library,
                                               cl_device_id device, QString& problem);

    const OpenClLibrary& OpenCl() const { return *m_library; }
    cl_command_queue Queue() const { return m_queue.Get(); }
    cl_kernel Kernel() const { return m_kernel.Get(); }

    /// Whether device and processor read the same memory, so that copies would be a waste.
    bool SharesMemory() const { return m_sharesMemory; }
    /// Bytes of the largest buffer that is worked on at once.
    qint64 LargestBuffer() const { return m_largestBuffer; }

    /// A buffer of `bytes` bytes, in or from the memory at `host` as `flags` say; none, and why in `problem`,
    /// where that fails.
    OpenClHandle<cl_mem> MakeBuffer(cl_mem_flags flags, qint64 bytes, void* host, QString& problem) const;

    /// Returns when the device has nothing left to do.
    [[nodiscard]] QString Finish() const;

private:
    explicit OpenClSession(std::shared_ptr<const OpenClLibrary> library) : m_library(std::move(library)) {}

    QString MakeQueue(cl_device_id device);
    QString MakeKernel(cl_device_id device);
    QString BuildLog(cl_device_id device) const;
    void ReadLimits(cl_device_id device);

    std::shared_ptr<const OpenClLibrary> m_library;
    OpenClHandle<cl_context> m_context;
    OpenClHandle<cl_command_queue> m_queue;
    OpenClHandle<cl_program> m_program;
    OpenClHandle<cl_kernel> m_kernel;
    bool m_sharesMemory = false;
    qint64 m_largestBuffer = 0;
};
