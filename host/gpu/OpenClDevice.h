#pragma once

#include "gpu/GpuUse.h"
#include "gpu/OpenClLibrary.h"
#include "gpu/SelectiveColorsDevice.h"

#include <list>
#include <memory>

class OpenClBands;
class OpenClSession;
class OpenClStaging;
struct SharedPixels;

/// A device that OpenCL offers. Results are those of AdjustSelectiveColorsOnCpu(), byte for byte.
class OpenClDevice : public SelectiveColorsDevice
{
public:
    /// The first device of those that `use` allows, graphics cards before others; null, and why in
    /// `problem`, where there is none.
    static std::unique_ptr<OpenClDevice> Find(std::shared_ptr<const OpenClLibrary> library, GpuUse use,
                                              QString& problem);
    ~OpenClDevice() override;

    QString Name() const override { return m_name; }
    [[nodiscard]] QString Prepare() override;
    [[nodiscard]] QString Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                                 const std::atomic<bool>& abort) override;
    void ReleasePictures() override;
    void Reset() override;

private:
    OpenClDevice(std::shared_ptr<const OpenClLibrary> library, cl_device_id device, const QString& name);

    OpenClBands& Kept(const SharedPixels& pixels, const OpenClBands* taken);
    void Forget(const SharedPixels& pixels);
    QString AdjustOnce(const SelectiveColorsJob& job, const RGBA32iImage& result,
                       const std::atomic<bool>& abort);

    std::shared_ptr<const OpenClLibrary> m_library;
    cl_device_id m_device;
    QString m_name;
    std::unique_ptr<OpenClSession> m_session;
    std::unique_ptr<OpenClStaging> m_staging;
    std::list<OpenClBands> m_kept; ///< what was used last first
};
