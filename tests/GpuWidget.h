#pragma once

#include "KVGpuPreview.h"
#include "TestPictures.h"
#include "YDAdjustmentWidget.h"

#include <chrono>
#include <memory>

/// What a preview of the processor is filled with.
constexpr int GreyOfProcessor = 200;

/// An adjustment whose previews the service computes.
class GpuWidget : public YDAdjustmentWidget
{
public:
    explicit GpuWidget(KVGpuService& service, std::chrono::milliseconds patience = std::chrono::hours(1))
        : YDAdjustmentWidget(true, nullptr, Qt::WindowFlags()),
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
    void StartJobWatching(JobWatcher* watcher) override
    {
        SelectiveParamsList params;
        params.targets[0].cyan = float(m_percent);
        const YDAdjustmentJob job = MakePreviewJob();
        if (!m_preview->Start(watcher, job, PictureNumber(), params))
            Launch(watcher, &ByProcessor, job);
    }

protected:
    void AbortJob() override { m_preview->Abort(); }

private:
    static RGBA32iImage ByProcessor(const YDAdjustmentJob& job)
    {
        return TestPictures::Grey(job.image.Width(), job.image.Height(), GreyOfProcessor);
    }

    std::unique_ptr<KVGpuPreview> m_preview;
    int m_percent = 0;
};

/// The level that the adjusted picture of `widget` begins with; -1 without one.
inline int Shown(const YDAdjustmentWidget& widget)
{
    const RGBA32iImage image = widget.AdjustedImage();
    return image.IsEmpty() ? -1 : image.Row(0)[0].g;
}
