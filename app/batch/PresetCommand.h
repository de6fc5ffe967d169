#pragma once

#include "batch/ExitStatus.h"

#include <QStringList>

/// "adjust preset": writes a stored preset.
[[nodiscard]] ExitStatus RunPresetCommand(const QStringList& arguments);
