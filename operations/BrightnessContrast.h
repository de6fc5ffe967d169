#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// Brightness and contrast: how far mid grey is moved, and how steeply tones rise there.
struct BrightnessContrast
{
    int brightness = 0; ///< -100..100 by the slider, -127..127 by the spin box; other values count as bounds
    int contrast = 0;   ///< likewise

    static constexpr std::string_view Tag = "KVBrightnessContrast 1.00000";
    static constexpr YDRecordName LogName{"src/YDBrightnessContrastWidget", "brightness and contrast"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        constexpr YDRecord::Range SliderRange{-100, 100};
        return visit("brightness", self.brightness, SliderRange) &&
               visit("contrast", self.contrast, SliderRange);
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const BrightnessContrast& settings);

} // namespace operations
