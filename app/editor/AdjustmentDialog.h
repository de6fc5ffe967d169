#pragma once

#include "catalog/AdjustmentCatalog.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class PresetMenu;
class QVBoxLayout;
class YDTaskWidget;

/// The window of one adjustment beside its picture: the adjustment's widget, and its presets.
///
/// Enter presses OK, and Esc and the closing of the window are Cancel: the dialog never closes by itself, it
/// only says so.
class AdjustmentDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AdjustmentDialog(const AdjustmentEntry& entry, QWidget* parent = nullptr);
    ~AdjustmentDialog() override;

    const AdjustmentEntry& Entry() const { return m_entry; }
    YDTaskWidget* Widget() const { return m_widget; }
    PresetMenu* Presets() const { return m_presets; }

    /// Where the dialog is disabled, the focus stays in mind and comes back with the controls.
    void SetControlsEnabled(bool enabled);

    void reject() override;
    bool event(QEvent* event) override;

signals:
    /// The user wants to leave without the result.
    void Dismissed();

private:
    void PlacePresets(QVBoxLayout& outer);
    void FocusFirstControl();

    const AdjustmentEntry& m_entry;
    YDTaskWidget* m_widget;
    PresetMenu* m_presets;
    QPointer<QWidget> m_focus;
    bool m_wasActive = false; ///< before a modal dialog came in front
};
