#pragma once

#include "adjustmentgui_catalog_export.h"
#include "catalog/AdjustmentCatalog.h"

#include <QDialog>
#include <QPointer>

class QCheckBox;
class QVBoxLayout;
class YDTaskWidget;

/// The window of one adjustment beside its picture: the adjustment's widget, and what a host adds to it.
///
/// Enter presses OK, and Esc and the closing of the window are Cancel: the dialog never closes by itself, it
/// only says so.
class ADJUSTMENTGUI_CATALOG_EXPORT AdjustmentDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AdjustmentDialog(const AdjustmentEntry& entry, QWidget* parent = nullptr);
    ~AdjustmentDialog() override;

    const AdjustmentEntry& Entry() const { return m_entry; }
    YDTaskWidget* Widget() const { return m_widget; }

    /// Places a small control of the host's, such as a menu of presets, in the row of the preview toggle,
    /// which leaves the room for it; above all where there is none. The dialog takes it over.
    void AddControl(QWidget* control);

    /// Where the dialog is disabled, the focus stays in mind and comes back with the controls.
    void SetControlsEnabled(bool enabled);

    void reject() override;
    bool event(QEvent* event) override;

signals:
    /// The user wants to leave without the result.
    void Dismissed();

private:
    QCheckBox* PreviewToggle() const;
    void PlaceAdded(QVBoxLayout& outer);
    void FocusFirstControl();

    const AdjustmentEntry& m_entry;
    YDTaskWidget* m_widget;
    QWidget* m_added; ///< around the host's controls; hidden without any
    QPointer<QWidget> m_focus;
    bool m_wasActive = false; ///< before a modal dialog came in front
};
