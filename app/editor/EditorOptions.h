#pragma once

#include "editor/ColorScheme.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace operations {
class Settings;
}
struct AdjustmentEntry;

/// What the command line asks for.
struct EditorOptions
{
    Q_DECLARE_TR_FUNCTIONS(EditorOptions)

public:
    QStringList pictures;
    std::optional<ColorScheme::Scheme> colorScheme;

    /// With --render: one picture, adjusted through the dialog, without anybody to press a button.
    bool isRender = false;
    const AdjustmentEntry* adjustment = nullptr;
    std::shared_ptr<operations::Settings> settings;
    QString outputPath; ///< of the adjusted picture; empty: not wanted
    QString windowPath; ///< of the picture of the window; empty: not wanted

    /// Empty, or why the call is wrong; nothing of the options counts then.
    QString error;

    /// Ends the program where the call asks for help or the version.
    static EditorOptions Parse(const QStringList& arguments);

private:
    void TakeRender(const QString& adjustmentName, const QStringList& assignments);
};
