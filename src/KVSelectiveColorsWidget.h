#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "image/SelectiveParamsList.h"
#include "operations/SelectiveColors.h"

#include <QMap>

#include <memory>

class KVGpuPreview;

namespace Ui {
class SelectiveColorsWidget;
}

/// The inks of nine ranges of colours, each range with a cyan, magenta, yellow and black of its own.
///
/// The spin boxes show the range that is chosen in the combo box. What they cannot show is kept as it was
/// stored until it is edited. Previews are computed by the GPU service where there is one, ConvertImage()
/// always computes by itself, with the same result.
class ADJUSTMENTGUI_EXPORT KVSelectiveColorsWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    KVSelectiveColorsWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~KVSelectiveColorsWidget() override;

    SelectiveParamsList GetValue() const;
    /// Shows `params` without announcing a change. Ranges missing from a short list count as 0, surplus ones
    /// are not taken.
    void SetValue(const SelectiveParamsList& params);

    /// Tells the GPU service, until the widget is hidden, to expect pictures of about this size.
    void SetupActivation(int width, int height) override;
    operations::Task MakeTask() const override;
    void Reset() override;
    void StartJobWatching(JobWatcher* watcher) override;

public slots:
    void OnValueChanged();
    void OnTargetColorsChanged();
    void OnModeChanged();
    /// Takes the GPU service's answer, if it is the one to the newest request of this widget.
    void OnGpuResultReady(const RGBA32iImage& image);

signals:
    void ValueChanged();
    /// Never emitted: the widget asks the GPU service itself.
    void RequestGpuProcess(unsigned char* pixels, int width, int height, const QList<SelectiveParams>& params,
                           Mode mode, bool isContentNew);

protected:
    void AbortJob() override;
    void hideEvent(QHideEvent* event) override;

private:
    void InsertTargetColors();
    void ConnectGpu();
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void ShowTarget();
    void ShowPercentages(const SelectiveParams& params);
    void ShowMode();

    const std::unique_ptr<Ui::SelectiveColorsWidget> m_ui;
    ControlLinks m_links;
    QMap<int, SelectiveParams> m_targets; ///< by the index of the range in the combo box
    Mode m_mode = Mode::Relative;
    std::unique_ptr<KVGpuPreview> m_gpu; ///< null without a GPU service
};

ADJUSTMENTGUI_EXPORT QDataStream& operator<<(QDataStream& stream, const SelectiveParamsList& params);
/// A record that cannot be read is logged and becomes the default one.
ADJUSTMENTGUI_EXPORT QDataStream& operator>>(QDataStream& stream, SelectiveParamsList& params);
