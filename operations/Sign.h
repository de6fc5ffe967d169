#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <QRect>
#include <QString>
#include <Qt>

namespace operations {

/// A picture file that is laid onto the picture.
struct Sign
{
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignTop; ///< one flag of each direction, by the panel
    QString fileName;
    /// Distances from the picture's edges in pixels, 0..999 by the panel. Four numbers and no rectangle: the
    /// left one may exceed the right one, and nothing may ask for a width.
    QRect margins{QPoint(5, 5), QPoint(5, 5)};
    int blendingMode = 0; ///< a KVCompositionMode, or any number from a stream
    int opacity = 100;    ///< per cent, 0..100 by the panel

    static constexpr std::string_view Tag = "KVSign 1.00000";
    static constexpr YDRecordName LogName{"src/YDSignWidget", "sign", 526, 539};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        return visit("alignment", self.alignment) &&
               visit("margins", self.margins, YDRecord::Range{0, 999}) && visit("fileName", self.fileName) &&
               visit("blendingMode", self.blendingMode, YDRecord::Range{0, 23}) &&
               visit("opacity", self.opacity, YDRecord::Range{0, 100});
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }
};

/// What the settings lack without which they draw nothing, for people; empty for nothing.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT QString WhatIsMissing(const Sign& settings);

/// Reads the file when it is run, unless that was read before and has not changed.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Sign& settings);

} // namespace operations
