#pragma once

#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/Posterize.h"

#include <memory>

namespace Ui {
class PosterizeParamWidget;
}

/// The number of levels of each channel, a slider and a spin box that follow one another.
///
/// The spin box holds the value. There is no record and no stream.
class ADJUSTMENTGUI_EXPORT YDPosterizeWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    YDPosterizeWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDPosterizeWidget() override;

    /// 2..255.
    int GetPosterize() const;
    /// Shows `levels` without announcing a change.
    void SetPosterize(int levels);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnPosterizeChanged(int levels);

signals:
    void PosterizeChanged();

private:
    const std::unique_ptr<Ui::PosterizeParamWidget> m_ui;
};
