#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <QColor>

namespace operations {

/// A ramp from a black tone to a white tone, by brightness.
struct Tint
{
    /// How the brightness is weighted; in the last one each channel has its own ramp.
    enum Type
    {
        Average,
        Ntsc,
        Luma,
        Rgb
    };

    QColor blackTone{5, 6, 8};
    QColor whiteTone{170, 209, 255};
    int amount = 75; ///< per cent, 0..100 by the slider
    int type = Average;

    static constexpr std::string_view Tag = "KVTint 1.00000";
    static constexpr YDRecordName LogName{"src/YDTintWidget", "tint"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("blackTone", self.blackTone) && visit("whiteTone", self.whiteTone) &&
               visit("amount", self.amount, YDRecord::Range{0, 100}) &&
               visit("type", self.type, YDRecord::Range{Average, Rgb});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

/// A type that there is not has no result: the outcome's picture is empty, and its problem says so.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Tint& settings);

} // namespace operations
