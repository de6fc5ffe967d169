#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// The reduction to a few levels. Its widget keeps the value in its controls, so there is no stream.
struct Posterize
{
    int levels = 4; ///< of each channel

    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("levels", self.levels, YDRecord::Range{2, 255});
    }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Posterize& settings);

} // namespace operations
