#pragma once

#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "editor/PresetStore.h"

#include <QPointer>
#include <QPushButton>

class AdjustmentSession;
class QMenu;

/// The button "Presets": stores the settings of an adjustment's widget in files and brings them back.
class PresetMenu : public QPushButton
{
    Q_OBJECT

public:
    explicit PresetMenu(QWidget* parent = nullptr);
    /// One in the session's dialog, whose preview follows what is loaded.
    static PresetMenu* AddTo(AdjustmentSession& session);
    ~PresetMenu() override;

    /// Works for `widget`, one of `entry`, from now on. An adjustment without presets disables the button.
    void SetTarget(const AdjustmentEntry& entry, YDTaskWidget* widget);

    /// Shows the settings of the file in the widget; one that cannot be used leaves them as they are and
    /// says why.
    void Load(const QString& path);
    void Save(const QString& path);

signals:
    /// Stored settings are shown in the widget, which has announced nothing.
    void Loaded();

private:
    void FillMenu();
    void OnLoad();
    void OnSave();
    QString DialogFolder() const;

    const AdjustmentEntry* m_entry = nullptr;
    QPointer<YDTaskWidget> m_widget;
    QMenu* m_menu;
};
