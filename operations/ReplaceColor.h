#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <QColor>

namespace operations {

/// Another colour for the area around a corner.
struct ReplaceColor
{
    /// The corner that the area is grown from.
    enum Position
    {
        LeftTop,
        RightTop,
        LeftBottom,
        RightBottom
    };

    int tolerance = 0;      ///< by which a channel may differ from the corner's pixel, 0..255 by the controls
    int position = LeftTop; ///< a Position; any other number counts as LeftTop
    QColor color{Qt::white}; ///< without its alpha
    int opacity = 100;       ///< per cent, 0..100 by the controls

    static constexpr std::string_view Tag = "KVReplaceColor 1.00000";
    static constexpr YDRecordName LogName{"src/YDReplaceColorWidget", "sign", 397, 410};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("tolerance", self.tolerance, YDRecord::Range{0, 255}) &&
               visit("position", self.position, YDRecord::Range{LeftTop, RightBottom}) &&
               visit("color", self.color) && visit("opacity", self.opacity, YDRecord::Range{0, 100});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

/// The fill is not limited by a selection, tells no progress and is not aborted.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const ReplaceColor& settings);

} // namespace operations
