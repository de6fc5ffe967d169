#pragma once

#include "image/ChannelTablesTransformation.h"

/// Brightness and contrast, linear around mid grey:
/// `v' = (v + b - 127.5) * k + 127.5` with `k = (127 + c) / 127` for c <= 0 and `127 / (127 - c)` above.
///
/// So contrast -127 gives mid grey throughout and 127 a step there.
class YDIterativeBrightnessContrastTransformation : public ChannelTablesTransformation
{
public:
    /// `brightness` and `contrast` in -127..127; values outside count as the nearest bound.
    YDIterativeBrightnessContrastTransformation(int brightness, int contrast);
};
