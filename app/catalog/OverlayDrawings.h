#pragma once

#include "catalog/AdjustmentCatalog.h"

/// What draws the overlays whose panels hold settings alone.
namespace OverlayDrawings {

/// Of a YDSignWidget.
AdjustmentEntry::Drawing OfSign(const YDAdjustmentWidget& panel);
/// Of a YDWatermarkWidget.
AdjustmentEntry::Drawing OfWatermark(const YDAdjustmentWidget& panel);

} // namespace OverlayDrawings
