#pragma once

#include "YDAdjustmentWidget.h"
#include "adjustmentgui_export.h"

#include <memory>

namespace Ui {
class PosterizeParamWidget;
}

/// The number of levels of each channel, a slider and a spin box that follow one another.
///
/// The spin box holds the value. There is no record and no stream.
class ADJUSTMENTGUI_EXPORT YDPosterizeWidget : public YDAdjustmentWidget
{
    Q_OBJECT

public:
    YDPosterizeWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDPosterizeWidget() override;

    /// 2..255.
    int GetPosterize() const;
    /// Shows `levels` without announcing a change.
    void SetPosterize(int levels);

    void ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                      const QRect& boundingRect) override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnPosterizeChanged(int levels);

signals:
    void PosterizeChanged();

private:
    struct PosterizeData : YDAdjustmentJob
    {
        int levels;
    };

    PosterizeData MakeData(const YDAdjustmentJob& job) const;
    static RGBA32iImage Process(const PosterizeData& data);

    const std::unique_ptr<Ui::PosterizeParamWidget> m_ui;
};
