#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <QColor>

namespace operations {

/// A coloured filter before the lens.
struct PhotoFilter
{
    QColor color{0xeb, 0xb1, 0x13}; ///< "Warming Filter (81)"
    int density = 50;               ///< per cent, 0..100 by the slider

    static constexpr std::string_view Tag = "KVPhotoFilter 1.00000";
    static constexpr YDRecordName LogName{"src/YDPhotoFilterWidget", "photo filter"};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("color", self.color) && visit("density", self.density, YDRecord::Range{0, 100});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const PhotoFilter& settings);

} // namespace operations
