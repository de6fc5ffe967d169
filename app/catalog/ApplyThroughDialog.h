#pragma once

#include "image/KVImage.h"

#include <QString>

class QPoint;
class QRect;
class YDAdjustmentWidget;

/// Puts the preview that `dialog` computes of `image` in the place of `image`, for adjustments that change
/// pixels in a dialog's preview alone. An empty answer when done; otherwise says, for people, why it could
/// not be, and `image` is as it was.
///
/// `dialog` is a widget in dialog mode that nobody sees, made for this one call: it has its settings and has
/// had no picture yet. An event loop turns until its job has ended, without the user's input but with all
/// else: whoever calls this sees to it that nothing in that loop begins the same once more, and expects that
/// anything else may have happened meanwhile. A program that is told to end does not wait for the job.
[[nodiscard]] QString ApplyThroughDialog(YDAdjustmentWidget& dialog, RGBA32iImage& image,
                                         const RGBA32iImage& selection, const QPoint& offset,
                                         const QRect& boundingRect);
