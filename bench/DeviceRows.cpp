#include "DeviceRows.h"

#include "Measurement.h"
#include "gpu/SelectiveColorsJob.h"
#include "gpu/SelectiveColorsOnCpu.h"
#include "gpu/SelectiveColorsService.h"

#include <QEventLoop>

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

namespace {

/// Something of every ink in every range.
QList<SelectiveParams> Targets()
{
    QList<SelectiveParams> targets;
    for (int range = 0; range < SelectiveParamsList::Ranges; ++range)
        targets.append({10.0f * float(range), -5.0f * float(range), 30.0f, -10.0f});
    return targets;
}

/// As a dialog has it: the picture was sent to the device by the pass before.
double TimeOnDevice(SelectiveColorsService& service, const BenchPictures& pictures)
{
    QEventLoop loop;
    QObject::connect(&service, &SelectiveColorsService::finished, &loop, &QEventLoop::quit);
    QObject::connect(&service, &SelectiveColorsService::dropped, &loop, [&loop] { loop.exit(1); });
    bool isAnswered = false;
    const double ms = TimeOf([&] {
        const RGBA32iImage& picture = pictures.photograph;
        const quint64 request =
            service.request_selective_color(picture.SharedPixels(), picture.Width(), picture.Height(),
                                            Targets(), Mode::Relative, nullptr, 0, 0, 0, 0, false, &loop);
        isAnswered = request != 0 && loop.exec() == 0;
    });
    return isAnswered ? ms : -1.0;
}

double TimeOnProcessor(const BenchPictures& pictures)
{
    return TimeOf([&pictures] {
        const RGBA32iImage& picture = pictures.photograph;
        SelectiveColorsJob job;
        job.source = SharedPixels::Of(picture);
        job.rule = SelectiveColorsRule(Targets(), Mode::Relative);
        const std::atomic<bool> neverAborted{false};
        AdjustSelectiveColorsOnCpu(job, RGBA32iImage::Uninitialized(picture.Width(), picture.Height()),
                                   neverAborted);
    });
}

} // namespace

void RegisterDeviceRows(int megapixels)
{
    auto* const service = dynamic_cast<SelectiveColorsService*>(KVGpuService::get_instance());
    if (!service)
        return;
    std::string device = service->device_name().toStdString();
    std::replace(device.begin(), device.end(), ' ', '-');
    const auto isFilterActive = std::make_shared<bool>(false);
    BenchRow onDevice;
    onDevice.prepare = [service, isFilterActive](const BenchPictures& pictures) {
        if (!std::exchange(*isFilterActive, true))
            service->begin_filter(pictures.photograph.Width(), pictures.photograph.Height());
    };
    onDevice.pass = [service](const BenchPictures& pictures) { return TimeOnDevice(*service, pictures); };
    onDevice.finish = [service, isFilterActive] {
        if (std::exchange(*isFilterActive, false))
            service->end_filter();
    };
    RegisterRow(megapixels, "selective-colors/on:" + device, onDevice);
    RegisterRow(megapixels, "selective-colors/on:processor", {TimeOnProcessor});
}
