#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <memory>

class YDThresholdCache;

namespace operations {

/// Stronger colours after an automatic stretch of the channels.
struct ColorEnhancer
{
    int amount = 100;   ///< per cent, 0..100 by the slider
    int affected = 100; ///< per cent: how far each channel has a range of its own

    static constexpr std::string_view Tag = "KVColorEnhancer 1.00000";
    static constexpr YDRecordName LogName{"src/YDColorEnhancerWidget", "color enhancer"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        constexpr YDRecord::Range Percent{0, 100};
        return visit("affected", self.affected, Percent) && visit("amount", self.amount, Percent);
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

/// Between a bound of a channel's own range and the common one: `affected` per cent of the way to its own.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT int InputBound(int own, int common, int affected);

/// A task for one picture alone: what is counted of it is kept in `thresholds` for the next task.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task
MakeTask(const ColorEnhancer& settings, const std::shared_ptr<YDThresholdCache>& thresholds);

/// Counts the picture that it is run on.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const ColorEnhancer& settings);

} // namespace operations
