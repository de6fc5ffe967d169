#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <QColor>

namespace operations {

/// A tint of one colour.
struct Colorize
{
    QColor color{255, 210, 255};
    int amount = 25; ///< per cent, 0..100 by the slider

    static constexpr std::string_view Tag = "KVColorizeFilter 1.00000";
    static constexpr YDRecordName LogName{"src/YDColorizeWidget", "colorize", 309, 322};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("color", self.color) && visit("amount", self.amount, YDRecord::Range{0, 100});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Colorize& settings);

} // namespace operations
