#include "editor/PresetStore.h"

#include "core/WholeFile.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString PresetStore::Folder() const
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QLatin1String("/presets/") +
           m_adjustment->name;
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

operations::PresetFile::Content PresetStore::Read(const QString& path) const
{
    operations::PresetFile::Content preset = operations::PresetFile::Read(path);
    if (!preset.error.isEmpty() || preset.adjustment->name == m_adjustment->name)
        return preset;
    const QString reason =
        tr("it is a preset of “%1”, not of “%2”").arg(preset.adjustment->Title(), m_adjustment->Title());
    return {nullptr, nullptr, WholeFile::Error(path, reason)};
}

QString PresetStore::Write(const QString& path, const operations::Settings& settings)
{
    const QByteArray preset = settings.ToPreset();
    if (preset.isEmpty())
        return WholeFile::Error(path, tr("these settings cannot be stored"));
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return WholeFile::Error(path, tr("the folder %1 cannot be created").arg(folder));
    return WholeFile::Write(path, preset, WholeFile::Existing::Replace);
}
