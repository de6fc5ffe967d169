#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// Gamma correction. Its widget keeps the value in its controls, so there is no stream.
struct Gamma
{
    double gamma = 1.0; ///< above 1 brightens

    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("gamma", self.gamma, YDRecord::Range{0.01, 5});
    }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Gamma& settings);

} // namespace operations
