#pragma once

#include "adjustmentgui_operations_export.h"

#include <QtGlobal>

#include <functional>

/// Levels from `low` to `high`, both included.
struct LevelRange
{
    int low;
    int high;
};

/// The input range that automatic levels give to a channel: without the 0.2 per cent of the pixels at either
/// end, and at least 16 wide.
///
/// `occupied` are the lowest and the highest level that occur, within 0..255, with low above high where none
/// does; `countOf` tells how many pixels have a level, and `pixels` how many there are in all.
///
/// The low end is the last level up to which the pixels make less than 0.2 per cent, that level included, or
/// the lowest one that occurs. The high end is the first level up to which they make 99.8 per cent. Without
/// any pixels the share is not a number, which counts as less than 0.2 per cent.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT LevelRange
AutomaticInputRange(const LevelRange& occupied, const std::function<qint64(int)>& countOf, double pixels);
