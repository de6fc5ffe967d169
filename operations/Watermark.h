#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Record.h"
#include "operations/Task.h"

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

namespace operations {

/// A text that is written onto the picture in a grid.
struct ADJUSTMENTGUI_OPERATIONS_EXPORT Watermark
{
    int angle = 0; ///< degrees, clockwise, -179..180 by the panel
    /// Distances from the picture's edges in pixels, 0..999 by the panel. Four numbers and no rectangle: the
    /// left one may exceed the right one, and nothing may ask for a width.
    QRect margins{QPoint(5, 5), QPoint(5, 5)};
    QString text = DefaultText();
    QFont font; ///< one from a stream may have any size, finite or not, and name what is not installed
    QColor color = Qt::white;
    int blendingMode = 0; ///< a KVCompositionMode, or any number from a stream
    int opacity = 100;    ///< per cent, 0..100 by the panel
    int hrzTiles = 1;     ///< repetitions across, 1..9 by the panel
    int vrtTiles = 1;     ///< repetitions down, 1..9 by the panel

    static constexpr std::string_view Tag = "KVWatermark 1.00000";
    static constexpr YDRecordName LogName{"src/YDWatermarkWidget", "watermark", 522, 535};
    template <class Self, class Visitor>
    static bool VisitFields(Self& self, Visitor&& visit)
    {
        constexpr YDRecord::Range Tiles{1, 9};
        return visit("angle", self.angle, YDRecord::Range{-179, 180}) &&
               visit("margins", self.margins, YDRecord::Range{0, 999}) && visit("text", self.text) &&
               visit("font", self.font) && visit("color", self.color) &&
               visit("blendingMode", self.blendingMode, YDRecord::Range{0, 23}) &&
               visit("opacity", self.opacity, YDRecord::Range{0, 100}) &&
               visit("hrzTiles", self.hrzTiles, Tiles) && visit("vrtTiles", self.vrtTiles, Tiles);
    }
    [[nodiscard]] bool Read(QDataStream& stream) { return YDRecord::Read(stream, *this); }
    [[nodiscard]] bool Write(QDataStream& stream) const { return YDRecord::Write(stream, *this); }

    /// In the user's language.
    static QString DefaultText();
};

/// Draws with fonts, so it is a problem of the outcome where there is no QGuiApplication.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Task MakeTask(const Watermark& settings);

} // namespace operations
