#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "operations/Tint.h"

#include <QColor>

#include <memory>

namespace Ui {
class TintWidget;
}

/// Maps the tones of a picture onto the ramp between two colours.
class ADJUSTMENTGUI_EXPORT YDTintWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::Tint;

    /// How the brightness of a pixel is found; also the index in the panel's list.
    enum Type
    {
        Average = Params::Average,
        Ntsc = Params::Ntsc,
        Luma = Params::Luma,
        Rgb = Params::Rgb,
    };

    YDTintWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags);
    ~YDTintWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params`. Other than in most panels, a type and an amount that differ from those shown are each
    /// announced as a change; the record is `params` by then.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    void Reset() override;

public slots:
    void OnBlackTone();
    void OnWhiteTone();
    void OnCurrentBlackToneChanged(const QColor& color);
    void OnCurrentWhiteToneChanged(const QColor& color);
    void OnAmountChanged(int amount);
    void OnTypeChanged(int index);

signals:
    void ValueChanged();

private:
    void Connect();
    void Disconnect() { m_links.Break(); }
    void FillTintTypes();
    void ShowParams(const Params& params);
    void SetBlackTone(const QColor& color);
    void SetWhiteTone(const QColor& color);
    static int IndexByType(int type) { return type; }

    const std::unique_ptr<Ui::TintWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
    /// What SetValue() shows, while it does: the spin box ends where a stored amount may go on.
    const Params* m_given = nullptr;
};
