#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <array>

namespace operations {

/// Shifts along three axes of colours, separately for shadows, midtones and highlights.
struct ColorBalance
{
    /// A position between two colours, -100..100 in the panel, for shadows, midtones and highlights.
    using Axis = std::array<int, 3>;

    Axis cyanRed{};
    Axis magentaGreen{};
    Axis yellowBlue{};
    int toneRange = 2; ///< the one that is edited: 1 shadows, 2 midtones, 3 highlights; others: none
    bool preserveLuminosity = true; ///< kept and shown; the transformation has no such choice

    static constexpr std::string_view Tag = "KVColorBalance 1.00000";
    static constexpr YDRecordName LogName{"src/YDColorBalanceWidget", "color balance"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        constexpr YDRecord::Range Percent{-100, 100};
        return visit("preserveLuminosity", self.preserveLuminosity) &&
               visit("toneRange", self.toneRange, YDRecord::Range{0, 3}) &&
               visit("cyanRed", self.cyanRed, Percent) && visit("magentaGreen", self.magentaGreen, Percent) &&
               visit("yellowBlue", self.yellowBlue, Percent);
    }
    /// The stream has `preserveLuminosity` as a qint32.
    [[nodiscard]] bool Read(QDataStream& stream)
    {
        return YDRecord::Read<YDRecord::FlagForm::Int>(stream, *this);
    }
    [[nodiscard]] bool Write(QDataStream& stream) const
    {
        return YDRecord::Write<YDRecord::FlagForm::Int>(stream, *this);
    }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const ColorBalance& settings);

} // namespace operations
