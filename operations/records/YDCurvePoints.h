#pragma once

#include "adjustmentgui_operations_export.h"
#include "image/YDRGBA32i.h"

#include <QPainterPath>
#include <QPoint>
#include <QVector>

#include <array>

/// What the curve editor knows of lists of points, a list a channel: which changes a list allows, how its
/// curve is drawn, and what a picked colour does to it.
///
/// A point is an input level x and an output level y. The editor keeps the points of a list at least
/// MinDistance apart in x; lists from elsewhere may be anything, and every function takes them.
namespace YDCurvePoints {

using Points = QVector<QPoint>;
/// Composite, red, green, blue.
using Curves = std::array<Points, 4>;

inline constexpr int MaxLevel = 255;
/// Levels in x between neighbours.
inline constexpr int MinDistance = 4;
/// A list with more points is drawn and applied, but has no handles.
inline constexpr int MostEditable = 4096;

/// The two end points of the identity.
inline Points Straight() { return {{0, 0}, {MaxLevel, MaxLevel}}; }

/// Whether a list has two ends, and not more points than can be shown.
ADJUSTMENTGUI_OPERATIONS_EXPORT bool IsEditable(const Points& points);

/// The scene has its origin at the top, a curve at the bottom: (x, 255 - y), in both directions. A y that
/// has no counterpart among the integers gives the nearest.
ADJUSTMENTGUI_OPERATIONS_EXPORT QPoint Flipped(const QPoint& point);

/// The index at which `point` may be inserted, with more than MinDistance in x to both neighbours and a y
/// among the levels; -1 if there is none.
ADJUSTMENTGUI_OPERATIONS_EXPORT int IndexForInsert(const Points& points, const QPoint& point);

/// Whether point `index` may become `point`: another one, and MinDistance or more from both neighbours.
ADJUSTMENTGUI_OPERATIONS_EXPORT bool MayMove(const Points& points, int index, const QPoint& point);

/// The curve of a list from x = 0 to 255, in scene coordinates; empty for fewer than two points. It goes
/// through the values that the transformation of the pictures rounds.
ADJUSTMENTGUI_OPERATIONS_EXPORT QPainterPath PathOf(const Points& points);

/// Makes the picked colour black: in the list of each colour the end with the lower output goes to its
/// level of `color` and output 0. Lists with fewer than two points stay.
ADJUSTMENTGUI_OPERATIONS_EXPORT void PickBlack(Curves& curves, const YDRGBA32i& color);
/// Makes it white: the end with the higher output goes to output 255.
ADJUSTMENTGUI_OPERATIONS_EXPORT void PickWhite(Curves& curves, const YDRGBA32i& color);
/// Makes it grey: between the ends there is one point, of the level of `color` and output 128. A list
/// without two ends gets those of a straight curve.
ADJUSTMENTGUI_OPERATIONS_EXPORT void PickGray(Curves& curves, const YDRGBA32i& color);

} // namespace YDCurvePoints
