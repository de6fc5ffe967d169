#pragma once

#include "operations/PresetFile.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

/// Where a user's stored settings of one adjustment lie, and how they get there and back.
class PresetStore
{
    Q_DECLARE_TR_FUNCTIONS(PresetStore)

public:
    explicit PresetStore(const operations::Adjustment& adjustment) : m_adjustment(&adjustment) {}

    /// Where this user's presets of the adjustment lie: "presets/NAME" in the application's data folder.
    QString Folder() const;
    /// Paths of the presets in that folder, by name.
    QStringList Files() const;
    /// The filter of a file dialog.
    static QString FileFilter();
    static QString Suffix() { return QStringLiteral("preset"); }

    /// Reads a preset of this adjustment; one of another is an error.
    [[nodiscard]] operations::PresetFile::Content Read(const QString& path) const;
    /// Writes a preset, creating its folder. An empty answer, or what failed and why.
    [[nodiscard]] static QString Write(const QString& path, const operations::Settings& settings);

private:
    const operations::Adjustment* m_adjustment;
};
