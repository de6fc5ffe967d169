#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <QColor>

namespace operations {

/// One colour over the whole picture or selection.
struct FillColor
{
    QColor color{Qt::black}; ///< its alpha is kept, and gives way to the opacity
    int opacity = 100;       ///< per cent, 0..100 by the controls

    static constexpr std::string_view Tag = "KVFillColor 1.00000";
    static constexpr YDRecordName LogName{"src/KVFillColorWidget", "colorize", 295, 308};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("color", self.color) && visit("opacity", self.opacity, YDRecord::Range{0, 100});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const FillColor& settings);

} // namespace operations
