#pragma once

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

/// A text that is written onto pictures in a grid, and how. Any values are allowed.
struct TextOverlay
{
    int angle = 0; ///< degrees, clockwise
    QRect margins; ///< as OverlayArea has them
    QString text;
    QFont font;           ///< in pixels of the picture, or in points of 4/3 of them
    QColor color;         ///< its alpha counts
    int blendingMode = 0; ///< a KVCompositionMode; any other number is Normal
    int opacity = 100;    ///< per cent
    int hrzTiles = 1;     ///< texts across, 1..MaxTiles; values outside count as the nearest bound
    int vrtTiles = 1;     ///< and down

    static constexpr int MaxTiles = 9;
};
