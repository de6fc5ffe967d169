#pragma once

#include "YDCurvePoints.h"
#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// Tone curves: one for each colour channel and one for all of them.
struct Curves
{
    int channel = 0; ///< in the editor: 0 composite, 1 red, 2 green, 3 blue; stored as read
    /// The points of each channel's curve, by channel; stored as read.
    YDCurvePoints::Curves curves{YDCurvePoints::Straight(), YDCurvePoints::Straight(),
                                 YDCurvePoints::Straight(), YDCurvePoints::Straight()};

    static constexpr std::string_view Tag = "KVCurves 1.00000";
    static constexpr YDRecordName LogName{"src/YDCurvesWidget", "curves", 1613, 1626};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("channel", self.channel, YDRecord::Range{0, 3}) &&
               visit("curves", self.curves, YDRecord::Range{0, YDCurvePoints::MaxLevel});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Curves& settings);

} // namespace operations
