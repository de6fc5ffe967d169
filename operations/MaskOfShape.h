#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Selection.h"

#include <QPainterPath>
#include <QSize>

namespace operations {

inline constexpr int MaxFeather = 500; ///< pixels

/// The mask of `shape`, in coordinates of a picture of the given size, with antialiased edges.
///
/// `feather` is the distance in pixels, on either side, over which the edge fades out; it is bounded by
/// MaxFeather. Where the shape reaches the picture's border it stays as it is, as if the picture went
/// on. A shape that selects not even a part of a pixel gives a mask that selects nothing; one that there is
/// no memory for is missing. Works on all cores, and may be called from a task of the global thread pool.
[[nodiscard]] ADJUSTMENTGUI_OPERATIONS_EXPORT Selection MaskOfShape(const QPainterPath& shape, int feather,
                                                                    const QSize& picture);

} // namespace operations
