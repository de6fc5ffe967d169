#pragma once

#include "catalog/AdjustmentCatalog.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>

/// The stored settings of one adjustment: files that hold the parameter stream and nothing else.
///
/// Files are taken for untrusted: what is not a whole preset of this adjustment is refused with a text that
/// names the file and says why.
class PresetStore
{
    Q_DECLARE_TR_FUNCTIONS(PresetStore)

public:
    static constexpr qint64 MaxFileBytes = qint64(16) << 20;

    struct ReadResult
    {
        std::unique_ptr<AdjustmentSettings> settings; ///< null where there is an error
        QString error;
    };

    explicit PresetStore(const AdjustmentEntry& entry) : m_entry(&entry) {}

    /// Where this user's presets of the adjustment lie: "presets/NAME" in the application's data folder.
    QString Folder() const;
    /// Paths of the presets in that folder, by name.
    QStringList Files() const;
    /// The filter of a file dialog.
    static QString FileFilter();
    static QString Suffix() { return QStringLiteral("preset"); }

    [[nodiscard]] ReadResult Read(const QString& path) const;
    /// Writes a preset, creating its folder. An empty answer, or what failed and why.
    [[nodiscard]] static QString Write(const QString& path, const AdjustmentSettings& settings);

private:
    const AdjustmentEntry* m_entry;
};
