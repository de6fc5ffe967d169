#pragma once

#include <QString>

#include <optional>

/// Whether the program looks light, dark, or as the desktop says.
namespace ColorScheme {

enum class Scheme
{
    System,
    Light,
    Dark,
};

/// "system", "light" or "dark"; nothing for other texts.
std::optional<Scheme> FromName(const QString& name);
QString Name(Scheme scheme);

/// Changes style and palette of the running program. Call it once the QApplication exists.
void Apply(Scheme scheme);

/// The user's choice; System until there was one.
Scheme Stored();
void Store(Scheme scheme);

} // namespace ColorScheme
