#pragma once

#include "YDRecord.h"
#include "adjustmentgui_operations_export.h"
#include "image/SelectiveParamsList.h"
#include "operations/Task.h"

#include <array>

class SharedDevice;

namespace operations {

/// The inks of nine ranges of colours: the list of the image library with its fields named.
struct ADJUSTMENTGUI_OPERATIONS_EXPORT SelectiveColors
{
    using Inks = std::array<float, 4>; ///< cyan, magenta, yellow, black; per cent

    std::array<Inks, SelectiveParamsList::Ranges> targets{}; ///< reds, yellows, ..., blacks
    int mode = SelectiveParamsList::Relative;

    static constexpr std::string_view Tag = SelectiveParamsList::Tag;
    static constexpr YDRecordName LogName{"src/KVSelectiveColorsWidget", "selective colors", 307, 320};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("targets", self.targets, YDRecord::Range{-100, 100}) &&
               visit("mode", self.mode, YDRecord::Range{0, 1});
    }

    SelectiveColors() = default;
    /// Ranges missing from a short list count as 0, surplus ones are not taken.
    explicit SelectiveColors(const SelectiveParamsList& params);
    SelectiveParamsList List() const;

    /// In the form of the list, which allows no other number of ranges than nine.
    [[nodiscard]] bool Read(QDataStream& stream);
    [[nodiscard]] bool Write(QDataStream& stream) const;
};

/// By a device beside the processor where one is to be used (ChosenGpuUse()) and no other task has it, else
/// by the processor: the same bytes. Until the first run nothing is looked for. A picture that is adjusted in
/// place is copied for the device; a device that hangs holds the run up, and `ADJUSTMENTGUI_GPU=off` does
/// without.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const SelectiveColors& settings);

/// In the same way, by `device`, which outlives the task and may be null.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeDeviceTask(const SelectiveColors& settings,
                                                                  SharedDevice* device);

/// By the processor alone. Ranges missing from a short list count as 0, surplus ones are not taken.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeProcessorTask(const SelectiveParamsList& settings);

} // namespace operations
