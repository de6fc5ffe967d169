#pragma once

#include "KVGpuPreview.h"
#include "TestPictures.h"
#include "YDTaskWidget.h"

#include <chrono>
#include <memory>

/// What a preview of the processor is filled with.
constexpr int GreyOfProcessor = 200;

/// An adjustment whose previews the service computes.
class GpuWidget : public YDTaskWidget
{
public:
    explicit GpuWidget(KVGpuService& service, std::chrono::milliseconds patience = std::chrono::hours(1))
        : YDTaskWidget(true, nullptr, Qt::WindowFlags()),
          m_preview(std::make_unique<KVGpuPreview>(service, patience))
    {
        connect(
            &service, &KVGpuService::finished, this,
            [this](const RGBA32iImage& image) { m_preview->Take(image); }, Qt::QueuedConnection);
        connect(m_preview.get(), &KVGpuPreview::Failed, this, &GpuWidget::StartProcessing);
    }

    KVGpuPreview& Preview() { return *m_preview; }
    void SetPercent(int percent)
    {
        m_percent = percent;
        emit DataChanged();
    }

    void Reset() override { SetPercent(0); }
    operations::Task MakeTask() const override
    {
        return operations::Task([](const YDAdjustmentJob& job) -> operations::Outcome {
            return TestPictures::Grey(job.image.Width(), job.image.Height(), GreyOfProcessor);
        });
    }
    void StartJobWatching(JobWatcher* watcher) override
    {
        SelectiveParamsList params;
        params.targets[0].cyan = float(m_percent);
        if (!m_preview->Start(watcher, MakePreviewJob(), PictureNumber(), params))
            YDTaskWidget::StartJobWatching(watcher);
    }

protected:
    void AbortJob() override { m_preview->Abort(); }

private:
    std::unique_ptr<KVGpuPreview> m_preview;
    int m_percent = 0;
};

/// The level that the adjusted picture of `widget` begins with; -1 without one.
inline int Shown(const YDAdjustmentWidget& widget)
{
    const RGBA32iImage image = widget.AdjustedImage();
    return image.IsEmpty() ? -1 : image.Row(0)[0].g;
}
