#pragma once

#include <QtGlobal>

/// How an overlay's pixels and the picture's are mixed. The numbers are stored in presets; they are those of
/// QPainter::CompositionMode.
enum class KVCompositionMode : qint32
{
    Normal = 0,
    Addition = 12,
    Multiply = 13,
    Screen = 14,
    Overlay = 15,
    Darken = 16,
    Lighten = 17,
    ColorDodge = 18,
    ColorBurn = 19,
    HardLight = 20,
    SoftLight = 21,
    Difference = 22,
    Exclusion = 23,
};
