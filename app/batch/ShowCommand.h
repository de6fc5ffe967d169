#pragma once

#include "batch/ExitStatus.h"

#include <QStringList>

/// "adjust show": which adjustment a stored preset is of, and its fields.
[[nodiscard]] ExitStatus RunShowCommand(const QStringList& arguments);
