#pragma once

#include "catalog/AdjustmentCatalog.h"

/// What draws the overlays whose panels hold settings alone.
namespace OverlayDrawings {

/// Of a YDSignWidget.
AdjustmentEntry::Drawing OfSign(const YDAdjustmentWidget& panel);
/// What the settings of a YDSignWidget lack; empty for nothing.
QString WhatSignLacks(const YDAdjustmentWidget& panel);
/// Of a YDWatermarkWidget.
AdjustmentEntry::Drawing OfWatermark(const YDAdjustmentWidget& panel);

} // namespace OverlayDrawings
