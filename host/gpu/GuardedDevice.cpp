#include "gpu/GuardedDevice.h"

#include "gpu/SelectiveColorsDevice.h"

#include <utility>

namespace {

/// After so many failures without a success between them the device is left alone.
constexpr int MostFailures = 3;

} // namespace

GuardedDevice::GuardedDevice(std::unique_ptr<SelectiveColorsDevice> device)
    : m_device(std::move(device)), m_name(m_device->Name())
{}

GuardedDevice::~GuardedDevice() = default;

void GuardedDevice::Prepare()
{
    if (m_failures >= MostFailures)
        return;
    m_isInUse = true;
    const QString problem = m_device->Prepare();
    if (!problem.isEmpty())
        GiveUp(problem);
}

bool GuardedDevice::Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                           const std::atomic<bool>& abort)
{
    if (!m_isInUse)
        return false;
    const QString problem = m_device->Adjust(job, result, abort);
    if (problem.isEmpty())
        m_failures = 0;
    else
        GiveUp(problem);
    return problem.isEmpty();
}

void GuardedDevice::ReleasePictures() { m_device->ReleasePictures(); }

void GuardedDevice::GiveUp(const QString& problem)
{
    m_device->Reset();
    m_isInUse = false;
    ++m_failures;
    if (m_told.contains(problem))
        return;
    m_told.insert(problem);
    qWarning("Selective colours go on without %s: %s", qUtf8Printable(m_name), qUtf8Printable(problem));
}
