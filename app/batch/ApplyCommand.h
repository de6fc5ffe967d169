#pragma once

#include "batch/ExitStatus.h"

#include <QStringList>

/// "adjust apply": adjustments over pictures. GUI thread.
[[nodiscard]] ExitStatus RunApplyCommand(const QStringList& arguments);
