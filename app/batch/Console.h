#pragma once

#include <QString>

/// Standard output and standard error of the program. Call from the main thread.
namespace Console {

/// A line on standard output.
void Print(const QString& line);

/// A line "adjust: TEXT" on standard error; a progress line gives way to it.
void Complain(const QString& text);

/// Shows how far the work is, if standard error is a terminal; the next call takes its place.
void ShowProgress(const QString& text);
void ClearProgress();

/// Sends out what was printed; false if it did not all arrive, as on a full disk.
[[nodiscard]] bool Flush();

} // namespace Console
