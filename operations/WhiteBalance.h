#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// White balance, or the correction of an overexposed or underexposed picture, and a temperature filter.
struct WhiteBalance
{
    bool enhanced = false;           ///< the advanced correction; of use with mode 0 only
    int autoStrength = 50;           ///< per cent
    int overexposureStrength = 100;  ///< per cent
    int underexposureStrength = 100; ///< per cent
    int mode = 0;                    ///< a KVWBTransformation::BalanceFunction; stored as read
    bool useTemperature = false;     ///< filters the result
    int temperature = 0;             ///< -100 (cold) .. 100 (warm)
    int temperatureStrength = 50;    ///< density of the filter, per cent

    static constexpr std::string_view Tag = "KVWhiteBalance 1.00000";
    static constexpr YDRecordName LogName{"src/YDWBWidget", "WB"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        constexpr YDRecord::Range Percent{0, 100};
        return visit("enhanced", self.enhanced) && visit("autoStrength", self.autoStrength, Percent) &&
               visit("overexposureStrength", self.overexposureStrength, Percent) &&
               visit("underexposureStrength", self.underexposureStrength, Percent) &&
               visit("mode", self.mode, YDRecord::Range{0, 2}) &&
               visit("useTemperature", self.useTemperature) &&
               visit("temperature", self.temperature, YDRecord::Range{-100, 100}) &&
               visit("temperatureStrength", self.temperatureStrength, Percent);
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

/// The strength of the function that `mode` names; null for a function that there is not.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT int* StrengthFieldOf(WhiteBalance& settings);
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT const int* StrengthFieldOf(const WhiteBalance& settings);

/// Analyses the picture that it is run on.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const WhiteBalance& settings);

} // namespace operations
