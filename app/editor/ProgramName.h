#pragma once

#include <QString>

/// The program's name for people. Not the application's display name in Qt's sense, which the platform would
/// append to the title of every dialog too, where it leaves no room for the adjustment's own.
inline QString ProgramName() { return QStringLiteral("Adjust Editor"); }
