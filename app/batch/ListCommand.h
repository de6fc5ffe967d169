#pragma once

#include "batch/ExitStatus.h"

#include <QStringList>

/// "adjust list": the adjustments, their fields, ranges and defaults.
[[nodiscard]] ExitStatus RunListCommand(const QStringList& arguments);
