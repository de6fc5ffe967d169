#pragma once

#include "YDTaskWidget.h"
#include "adjustmentgui_catalog_export.h"

#include <memory>

class QLabel;

/// A dialog with a preview for an adjustment whose widget is a panel only: a stamp, a text.
///
/// Below the panel stands what the person should know once a preview is there: why the settings could not be
/// drawn, or what they lack.
class ADJUSTMENTGUI_CATALOG_EXPORT PanelDialog : public YDTaskWidget
{
    Q_OBJECT

public:
    PanelDialog(std::unique_ptr<YDTaskWidget> panel, QWidget* parent);

    /// The panel in `widget`, which is one itself or a dialog of this kind around one.
    static YDTaskWidget& PanelOf(YDTaskWidget& widget);
    static const YDTaskWidget& PanelOf(const YDTaskWidget& widget);

    operations::Task MakeTask() const override { return m_panel->MakeTask(); }
    QString WhatIsMissing() const override { return m_panel->WhatIsMissing(); }
    void Reset() override { m_panel->Reset(); }

private:
    void ShowRemark();

    YDTaskWidget* const m_panel;
    QLabel* const m_remark;
};
