#pragma once

#include "gpu/GuardedDevice.h"

#include <memory>
#include <mutex>

/// A device for who adjusts pictures on threads of their own: one of them uses it at a time, and who finds it
/// at work does without. Safe from any thread.
class SharedDevice
{
public:
    /// The device as long as somebody has it for themselves.
    class Turn
    {
    public:
        /// Whether the device is had at all.
        explicit operator bool() const { return m_lock.owns_lock(); }

        /// As GuardedDevice::Adjust() has it; keeps no picture for later. Only where the device is had.
        [[nodiscard]] bool Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                                  const std::atomic<bool>& abort);

    private:
        friend class SharedDevice;
        explicit Turn(SharedDevice& device);

        GuardedDevice& m_device;
        std::unique_lock<std::mutex> m_lock;
    };

    /// `device` is not null.
    explicit SharedDevice(std::unique_ptr<SelectiveColorsDevice> device);

    /// The device if nobody has it.
    Turn Take();

    /// The device of this process, looked for by the first call as ChosenGpuUse() says; null where there is
    /// none.
    static SharedDevice* OfProcess();

private:
    std::mutex m_mutex;
    GuardedDevice m_device; // used by who holds the mutex
};
