#pragma once

#include "catalog/AdjustmentCatalog.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class PresetMenu;
class QDialogButtonBox;
class QLabel;
class QVBoxLayout;
class YDAdjustmentWidget;

/// The window of one adjustment beside its picture: the adjustment's widget, and its presets.
///
/// Enter presses OK, and Esc and the closing of the window are Cancel: the dialog never closes by itself, it
/// only says so. A widget that is a panel only, because the host draws what it holds, gets the frame here
/// that the others bring along.
class AdjustmentDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AdjustmentDialog(const AdjustmentEntry& entry, QWidget* parent = nullptr);
    ~AdjustmentDialog() override;

    const AdjustmentEntry& Entry() const { return m_entry; }
    YDAdjustmentWidget* Widget() const { return m_widget; }
    PresetMenu* Presets() const { return m_presets; }

    /// Where the dialog is disabled, the focus stays in mind and comes back with the controls.
    void SetControlsEnabled(bool enabled);

    /// A line below the settings of a widget that the host draws, such as why they cannot be; empty for none.
    void ShowRemark(const QString& remark);

    void reject() override;
    bool event(QEvent* event) override;

signals:
    /// The frame's OK.
    void Confirmed();
    /// The user wants to leave without the result.
    void Dismissed();

private:
    void BuildFrame(QVBoxLayout& outer);
    void PlacePresets(QVBoxLayout& outer);
    void FocusFirstControl();

    const AdjustmentEntry& m_entry;
    YDAdjustmentWidget* m_widget;
    PresetMenu* m_presets;
    QLabel* m_remark = nullptr; ///< null, as the buttons, where the widget has a frame of its own
    QDialogButtonBox* m_buttons = nullptr;
    QPointer<QWidget> m_focus;
    bool m_wasActive = false; ///< before a modal dialog came in front
};
