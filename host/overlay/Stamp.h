#pragma once

#include <QRect>
#include <QString>
#include <Qt>

/// A picture file that is laid onto pictures, and where and how. Any values are allowed.
struct Stamp
{
    QString fileName;                             ///< empty: nothing is drawn
    int alignment = Qt::AlignLeft | Qt::AlignTop; ///< one horizontal and one vertical flag
    QRect margins;                                ///< as OverlayArea has them
    int blendingMode = 0;                         ///< a KVCompositionMode; any other number is Normal
    int opacity = 100;                            ///< per cent
};
