#include "gpu/SharedDevice.h"

#include "gpu/GpuUse.h"
#include "gpu/OpenClLibrary.h"
#include "gpu/SelectiveColorsDevice.h"
#include "gpu/SelectiveColorsJob.h"
#include "gpu/SelectiveColorsService.h"

#include <utility>

SharedDevice::Turn::Turn(SharedDevice& device)
    : m_device(device.m_device), m_lock(device.m_mutex, std::try_to_lock)
{}

bool SharedDevice::Turn::Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                                const std::atomic<bool>& abort)
{
    Q_ASSERT(*this);
    SelectiveColorsJob alone = job;
    alone.isBorrowed = true;
    return m_device.Adjust(alone, result, abort);
}

SharedDevice::SharedDevice(std::unique_ptr<SelectiveColorsDevice> device) : m_device(std::move(device)) {}

SharedDevice::Turn SharedDevice::Take() { return Turn(*this); }

SharedDevice* SharedDevice::OfProcess()
{
    static SharedDevice* const shared = [] {
        auto device = SelectiveColorsService::FindDevice(ChosenGpuUse(), OpenClLibrary::DefaultFileName());
        return device ? new SharedDevice(std::move(device)) : nullptr; // no driver is called once statics end
    }();
    return shared;
}
