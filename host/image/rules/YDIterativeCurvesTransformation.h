#pragma once

#include "image/ChannelTablesTransformation.h"

#include <QPoint>
#include <QVector>

/// A tone curve for each colour channel, and one for all of them on top of it.
///
/// A colour channel goes through its own curve and the result, rounded to a level, through the composite
/// one; YDCurvesTransformation says what the curve of a list of points is.
class YDIterativeCurvesTransformation : public ChannelTablesTransformation
{
public:
    /// `curves` points to four lists: composite, red, green, blue. A list with fewer than two points is the
    /// identity. `strength` mixes the result with the original, in per cent: 100 is the result alone.
    YDIterativeCurvesTransformation(const QVector<QPoint>* curves, int strength);
};
