#include "editor/PresetStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace {

/// Why `preset`, which is not one of `entry`, is none.
QString Reason(const QByteArray& preset, const AdjustmentEntry& entry)
{
    if (preset.isEmpty())
        return PresetStore::tr("the file is empty");
    const AdjustmentEntry* const other = AdjustmentCatalog::FindByPreset(preset);
    if (!other)
        return PresetStore::tr("the file is not a preset");
    if (other->name != entry.name)
        return PresetStore::tr("it is a preset of “%1”, not of “%2”").arg(other->Title(), entry.Title());
    return PresetStore::tr("the preset is cut short or damaged");
}

} // namespace

QString PresetStore::Folder() const
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QLatin1String("/presets/") +
           m_entry->name;
}

QStringList PresetStore::Files() const
{
    const QDir folder(Folder(), QLatin1String("*.") + Suffix(), QDir::Name | QDir::IgnoreCase, QDir::Files);
    QStringList paths;
    const QStringList names = folder.entryList();
    for (const QString& name : names)
        paths.append(folder.filePath(name));
    return paths;
}

QString PresetStore::FileFilter() { return tr("Presets (*.%1);;All files (*)").arg(Suffix()); }

PresetStore::ReadResult PresetStore::Read(const QString& path) const
{
    const QString name = QFileInfo(path).fileName();
    if (!QFileInfo(path).isFile())
        return {nullptr, tr("%1: there is no such file").arg(name)};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {nullptr, tr("%1: %2").arg(name, file.errorString())};
    if (file.size() > MaxFileBytes)
        return {nullptr, tr("%1: the file is too large for a preset").arg(name)};
    const QByteArray preset = file.read(MaxFileBytes);
    if (file.error() != QFileDevice::NoError)
        return {nullptr, tr("%1: %2").arg(name, file.errorString())};
    std::unique_ptr<AdjustmentSettings> settings = m_entry->makeSettings();
    if (!settings->IsTagOf(preset) || !settings->FromPreset(preset))
        return {nullptr, tr("%1: %2").arg(name, Reason(preset, *m_entry))};
    return {std::move(settings), QString()};
}

QString PresetStore::Write(const QString& path, const AdjustmentSettings& settings)
{
    const QFileInfo info(path);
    const QByteArray preset = settings.ToPreset();
    if (preset.isEmpty())
        return tr("%1: these settings cannot be stored").arg(info.fileName());
    if (!QDir().mkpath(info.absolutePath()))
        return tr("%1: the folder %2 cannot be created").arg(info.fileName(), info.absolutePath());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(preset) == preset.size() && file.commit())
        return {};
    return tr("%1: %2").arg(info.fileName(), file.errorString());
}
