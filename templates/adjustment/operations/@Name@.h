#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// @Title@.
struct @Name@
{
    int amount = 0; ///< per cent, 0..100 in the panel

    static constexpr std::string_view Tag = "KV@Name@ 1.00000";
    static constexpr YDRecordName LogName{"src/YD@Name@Widget", "@words@"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("amount", self.amount, YDRecord::Range{0, 100});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const @Name@& settings);

} // namespace operations
