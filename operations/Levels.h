#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <array>

namespace operations {

/// The input and output ranges of each channel and its middle tone.
struct ADJUSTMENTGUI_OPERATIONS_EXPORT Levels
{
    using Ends = std::array<int, 2>; ///< low and high

    int channel = 0; ///< that the panel shows: 0 composite, 1 red, 2 green, 3 blue
    std::array<Ends, 4> input{{{0, 255}, {0, 255}, {0, 255}, {0, 255}}};
    std::array<int, 4> middle{128, 128, 128, 128}; ///< of the input scale; follows from input and gamma
    std::array<Ends, 4> output{{{0, 255}, {0, 255}, {0, 255}, {0, 255}}}; ///< low above high inverts
    std::array<double, 4> gamma{1.0, 1.0, 1.0, 1.0};                      ///< above 1 brightens

    static constexpr std::string_view Tag = "KVLevels 1.00000";
    static constexpr YDRecordName LogName{"src/YDLevelsWidget", "levels", 774, 787};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        constexpr YDRecord::Range Scale{0, 255};
        return visit("channel", self.channel, YDRecord::Range{0, 3}) && visit("input", self.input, Scale) &&
               visit("output", self.output, Scale) && visit("gamma", self.gamma, YDRecord::Range{0.01, 9.99});
    }
    /// Sets `middle`, which is no field of its own, to what the fields say.
    void Derive();
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }

    /// Where the middle handle stands on the input scale for a gamma: in the middle for 1, at `low` for 9.99,
    /// at `high` for 0.01. In whole numbers, each division towards zero; what an int cannot hold is bounded.
    static int MiddleValue(int low, int high, double gamma);
    /// The gamma for a place of the middle handle, in thousandths; the inverse of MiddleValue().
    static double ToneValue(int low, int high, int position);
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Levels& settings);

} // namespace operations
