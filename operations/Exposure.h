#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// Exposure in linear light. Its widget keeps the values in its controls, so there is no stream.
struct Exposure
{
    double exposure = 0.0; ///< stops
    double offset = 0.0;   ///< of linear light

    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("exposure", self.exposure, YDRecord::Range{-20, 20}) &&
               visit("offset", self.offset, YDRecord::Range{-0.5, 0.5});
    }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Exposure& settings);

} // namespace operations
