#include "operations/SelectiveColors.h"

#include "MaskPart.h"
#include "RuleTask.h"
#include "gpu/SelectiveColorsJob.h"
#include "gpu/SharedDevice.h"
#include "image/KVIterativeSelectiveColorsTransformation.h"
#include "operations/TaskProgress.h"

using operations::SelectiveColors;

namespace {

const std::atomic<bool> NeverAborted{false};

/// What a device is to do for a job that has a source.
SelectiveColorsJob DeviceJobOf(const YDAdjustmentJob& job, const SelectiveParamsList& settings)
{
    SelectiveColorsJob deviceJob;
    deviceJob.source = SharedPixels::Of(job.source);
    deviceJob.rule = SelectiveColorsRule(settings.targets, settings.mode);
    if (!job.selectionBoundingRect.isEmpty()) {
        const MaskPart mask = MaskPart::Of(job);
        const auto pixels = reinterpret_cast<const unsigned char*>(mask.pixels);
        deviceJob.mask = {
            {job.selection.SharedPixels(), pixels}, mask.width, mask.height, job.selection.RowLength()};
        deviceJob.maskX = mask.place.x();
        deviceJob.maskY = mask.place.y();
    }
    return deviceJob;
}

bool ReachesPicture(const YDAdjustmentJob& job)
{
    return job.selectionBoundingRect.isEmpty() || MaskPart::Of(job).pixels;
}

/// Whether a device has done the job. Where none has, the job is as it was, or has a source that its image is
/// to be made from.
bool AdjustOnDevice(SharedDevice* shared, YDAdjustmentJob& job, const SelectiveParamsList& settings)
{
    if (!shared || job.image.IsEmpty() || !ReachesPicture(job))
        return false;
    SharedDevice::Turn device = shared->Take();
    if (!device)
        return false;
    if (job.source.IsEmpty())
        job.source = job.image.DeepCopy(job.abort);
    if (job.source.IsEmpty())
        return false;
    const bool isDone =
        device.Adjust(DeviceJobOf(job, settings), job.image, job.abort ? *job.abort : NeverAborted);
    if (isDone && job.progress) {
        emit job.progress->RangeChanged(0, 1);
        emit job.progress->ValueChanged(1);
    }
    return isDone;
}

/// `findDevice` is asked by each run.
template <class FindDevice>
operations::Task TaskOn(const FindDevice& findDevice, const SelectiveColors& settings)
{
    return operations::Task(
        [findDevice, list = settings.List()](YDAdjustmentJob job) {
            return AdjustOnDevice(findDevice(), job, list)
                       ? job.image
                       : operations::RunTransformation(job, KVIterativeSelectiveColorsTransformation(list));
        },
        operations::Task::Copying::InFirstPass);
}

} // namespace

SelectiveColors::SelectiveColors(const SelectiveParamsList& params) : mode(params.mode)
{
    for (int i = 0; i < SelectiveParamsList::Ranges; ++i) {
        const SelectiveParams target = params.targets.value(i);
        targets[std::size_t(i)] = {target.cyan, target.magenta, target.yellow, target.black};
    }
}

SelectiveParamsList SelectiveColors::List() const
{
    SelectiveParamsList params;
    params.targets.clear();
    for (const Inks& inks : targets)
        params.targets.append({inks[0], inks[1], inks[2], inks[3]});
    params.mode = Mode(mode);
    return params;
}

bool SelectiveColors::Read(QDataStream& stream)
{
    SelectiveParamsList params;
    const bool isWhole = params.Read(stream);
    if (isWhole)
        *this = SelectiveColors(params);
    return isWhole;
}

bool SelectiveColors::Write(QDataStream& stream) const { return List().Write(stream); }

operations::Task operations::MakeTask(const SelectiveColors& settings)
{
    return TaskOn([] { return SharedDevice::OfProcess(); }, settings);
}

operations::Task operations::MakeDeviceTask(const SelectiveColors& settings, SharedDevice* device)
{
    return TaskOn([device] { return device; }, settings);
}

operations::Task operations::MakeProcessorTask(const SelectiveParamsList& settings)
{
    return RuleTask([settings] { return KVIterativeSelectiveColorsTransformation(settings); });
}
