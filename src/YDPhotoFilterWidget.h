#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/PhotoFilter.h"

#include <QColor>

#include <memory>

namespace Ui {
class PhotoFilterWidget;
}

/// Lays a coloured filter over a picture, as on a lens. The colour is one of a list of named filters or any
/// other, for which the list shows "Custom".
class ADJUSTMENTGUI_EXPORT YDPhotoFilterWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::PhotoFilter;

    YDPhotoFilterWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDPhotoFilterWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

signals:
    void ValueChanged();

private slots:
    void OnColor();
    void OnCurrentColorChanged(const QColor& color);
    void OnDensityChanged(int density);
    void OnPresetChanged(int index);

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void FillPresets();
    void UpdatePresetIndex(const QColor& color);
    void SetColor(const QColor& color);

    const std::unique_ptr<Ui::PhotoFilterWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
