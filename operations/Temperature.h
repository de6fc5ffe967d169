#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

namespace operations {

/// Colour temperature and tint.
struct Temperature
{
    int temperature = 6500; ///< Kelvin, 1000..40000 in the panel
    int tint = 0;           ///< -100..100 in the panel
    int strength = 50;      ///< per cent

    static constexpr std::string_view Tag = "KVTemperature 1.00000";
    static constexpr YDRecordName LogName{"src/YDTemperatureWidget", "temperature"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("temperature", self.temperature, YDRecord::Range{1000, 40000}) &&
               visit("tint", self.tint, YDRecord::Range{-100, 100}) &&
               visit("strength", self.strength, YDRecord::Range{0, 100});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Temperature& settings);

} // namespace operations
