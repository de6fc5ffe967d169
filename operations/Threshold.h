#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// Black below a level of luma, white from there on.
struct Threshold
{
    int level = 128; ///< 1..255 by the panel; stored as read

    static constexpr std::string_view Tag = "KVThreshold 1.00000";
    static constexpr YDRecordName LogName{"src/YDThresholdWidget", "threshold", 298, 311};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("level", self.level, YDRecord::Range{1, 255});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Threshold& settings);

} // namespace operations
