#include "editor/PresetMenu.h"

#include "YDTaskWidget.h"
#include "catalog/AdjustmentDialog.h"
#include "catalog/AdjustmentSession.h"
#include "editor/Messages.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>

PresetMenu::PresetMenu(QWidget* parent) : QPushButton(tr("Presets"), parent), m_menu(new QMenu(this))
{
    setObjectName(QStringLiteral("PresetMenu"));
    setAccessibleName(tr("Presets"));
    setAutoDefault(false); // Enter is the dialog's OK
    setMenu(m_menu);
    connect(m_menu, &QMenu::aboutToShow, this, &PresetMenu::FillMenu);
}

PresetMenu* PresetMenu::AddTo(AdjustmentSession& session)
{
    AdjustmentDialog& dialog = *session.Dialog();
    auto* const menu = new PresetMenu(&dialog);
    menu->SetTarget(dialog.Entry(), dialog.Widget());
    dialog.AddControl(menu);
    connect(menu, &PresetMenu::Loaded, &session, &AdjustmentSession::Restart);
    return menu;
}

PresetMenu::~PresetMenu() = default;

void PresetMenu::SetTarget(const AdjustmentEntry& entry, YDTaskWidget* widget)
{
    m_entry = &entry;
    m_widget = widget;
    const bool hasPresets = entry.makeSettings()->HasPreset();
    setEnabled(hasPresets);
    setToolTip(hasPresets ? tr("Store these settings, or bring stored ones back")
                          : tr("The settings of this adjustment cannot be stored"));
}

void PresetMenu::Load(const QString& path)
{
    if (!m_widget)
        return;
    const operations::PresetFile::Content preset = PresetStore(*m_entry).Read(path);
    if (!preset.error.isEmpty()) {
        Messages::ShowError(window(), tr("The preset cannot be used."), preset.error);
        return;
    }
    m_entry->show(*m_widget, *preset.settings);
    emit Loaded();
}

void PresetMenu::Save(const QString& path)
{
    if (!m_widget)
        return;
    const QString error = PresetStore::Write(path, *m_entry->SettingsOf(*m_widget));
    if (!error.isEmpty())
        Messages::ShowError(window(), tr("The preset cannot be stored."), error);
}

void PresetMenu::FillMenu()
{
    m_menu->clear();
    if (!m_widget)
        return;
    const QStringList files = PresetStore(*m_entry).Files();
    for (const QString& path : files) {
        QString name = QFileInfo(path).completeBaseName();
        // A single ampersand would underline what follows it.
        m_menu->addAction(name.replace(QLatin1Char('&'), QLatin1String("&&")), this,
                          [this, path] { Load(path); });
    }
    if (files.isEmpty())
        m_menu->addAction(tr("No presets stored yet"))->setEnabled(false);
    m_menu->addSeparator();
    m_menu->addAction(tr("&Load…"), this, &PresetMenu::OnLoad);
    m_menu->addAction(tr("&Save…"), this, &PresetMenu::OnSave);
}

void PresetMenu::OnLoad()
{
    const QString path =
        QFileDialog::getOpenFileName(window(), tr("Load Preset"), DialogFolder(), PresetStore::FileFilter());
    if (!path.isEmpty())
        Load(path);
}

void PresetMenu::OnSave()
{
    QFileDialog dialog(window(), tr("Save Preset"), DialogFolder(), PresetStore::FileFilter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(PresetStore::Suffix());
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        Save(dialog.selectedFiles().constFirst());
}

/// The presets' own folder, which the dialog can only show once it exists.
QString PresetMenu::DialogFolder() const
{
    const QString folder = PresetStore(*m_entry).Folder();
    QDir().mkpath(folder);
    return folder;
}
