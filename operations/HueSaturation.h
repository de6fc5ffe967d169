#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// Hue, saturation and lightness, or the picture in one hue.
struct HueSaturation
{
    int hue = 0;        ///< degrees, 0..359 in the panel
    int saturation = 0; ///< -100..100 in the panel
    int lightness = 0;  ///< -100..100 in the panel
    bool colorize = false;

    static constexpr std::string_view Tag = "KVHueSaturation 1.00000";
    static constexpr YDRecordName LogName{"src/YDHueSaturationWidget", "hue and saturation"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        constexpr YDRecord::Range Percent{-100, 100};
        return visit("hue", self.hue, YDRecord::Range{0, 359}) &&
               visit("saturation", self.saturation, Percent) && visit("lightness", self.lightness, Percent) &&
               visit("colorize", self.colorize);
    }
    /// The stream has `colorize` as a qint32.
    [[nodiscard]] bool Read(QDataStream& stream)
    {
        return YDRecord::Read<YDRecord::FlagForm::Int>(stream, *this);
    }
    [[nodiscard]] bool Write(QDataStream& stream) const
    {
        return YDRecord::Write<YDRecord::FlagForm::Int>(stream, *this);
    }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const HueSaturation& settings);

} // namespace operations
