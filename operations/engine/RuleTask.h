#pragma once

#include "RunTransformation.h"
#include "operations/Task.h"

namespace operations {

/// The task of an adjustment that is one transformation, which `makeRule()` makes of the settings on the
/// thread of the run.
template <template <class> class Processing = YDAdjustmentProcessingTemplate, class MakeRule>
Task RuleTask(const MakeRule& makeRule)
{
    return Task(
        [makeRule](const YDAdjustmentJob& job) { return RunTransformation<Processing>(job, makeRule()); },
        Task::Copying::InFirstPass);
}

} // namespace operations
