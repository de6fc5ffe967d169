#pragma once

#include "gpu/SelectiveColorsDevice.h"
#include "gpu/SelectiveColorsJob.h"
#include "gpu/SelectiveColorsOnCpu.h"

#include <QThread>

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

/// What a test and its device know of each other; the device may be used by another thread.
struct DeviceState
{
    std::atomic<bool> isHeld{false}; ///< jobs do not end, unless they are aborted
    std::atomic<bool> fails{false};
    std::atomic<bool> spoilsResult{false}; ///< as a device does that fails in the middle
    std::atomic<bool> cannotBegin{false};
    std::atomic<bool> isBorrowed{false}; ///< the pixels of the last job
    std::atomic<int> begun{0};
    std::atomic<int> prepared{0};
    std::atomic<int> released{0};
    std::atomic<int> live{0};
};

/// A device that the processor stands in for.
class FakeDevice : public SelectiveColorsDevice
{
public:
    explicit FakeDevice(std::shared_ptr<DeviceState> state) : m_state(std::move(state)) { ++m_state->live; }
    ~FakeDevice() override { --m_state->live; }

    QString Name() const override { return QStringLiteral("a fake"); }
    QString Prepare() override
    {
        ++m_state->prepared;
        return m_state->cannotBegin ? QStringLiteral("it does not begin") : QString();
    }
    QString Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                   const std::atomic<bool>& abort) override
    {
        ++m_state->begun;
        m_state->isBorrowed = job.isBorrowed;
        while (m_state->isHeld && !abort)
            QThread::usleep(100);
        if (m_state->spoilsResult)
            std::fill_n(result.Row(result.Height() / 2), result.Width(), YDRGBA32i(1, 2, 3, 4));
        if (m_state->fails)
            return QStringLiteral("it broke");
        AdjustSelectiveColorsOnCpu(job, result, abort);
        return {};
    }
    void ReleasePictures() override { ++m_state->released; }
    void Reset() override {}

private:
    const std::shared_ptr<DeviceState> m_state;
};
