#pragma once

#include "operations/Settings.h"

#include <QStringList>

/// Settings and parts of the command line as texts.
namespace SettingsText {

/// A value as it is typed behind "FIELD=".
QString FromValue(const QJsonValue& value);

/// "brightness=30", a line for each field, in stream order.
QStringList Lines(const operations::Settings& settings);

/// The words of an -a option. Blanks part them, except within quotes, which are taken off, and within the
/// brackets of a list. False if a quote or a bracket is left open.
[[nodiscard]] bool Split(const QString& text, QStringList& words);

} // namespace SettingsText
