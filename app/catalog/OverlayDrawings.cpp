#include "catalog/OverlayDrawings.h"

#include "YDSignWidget.h"
#include "YDWatermarkWidget.h"
#include "overlay/DrawStamp.h"
#include "overlay/DrawText.h"
#include "overlay/OverlayCanvas.h"
#include "overlay/Stamp.h"
#include "overlay/TextOverlay.h"

#include <QCoreApplication>

AdjustmentEntry::Drawing OverlayDrawings::OfSign(const YDAdjustmentWidget& panel)
{
    const YDSignWidget::Params params = static_cast<const YDSignWidget&>(panel).GetValue();
    const Stamp stamp{params.fileName, int(params.alignment), params.margins, params.blendingMode,
                      params.opacity};
    return [stamp](const RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                   const QRect& boundingRect) {
        return DrawStamp(stamp, OverlayCanvas(image, selection, offset, boundingRect));
    };
}

QString OverlayDrawings::WhatSignLacks(const YDAdjustmentWidget& panel)
{
    return static_cast<const YDSignWidget&>(panel).GetValue().fileName.isEmpty()
               ? QCoreApplication::translate("OverlayDrawings", "no image is chosen, so nothing is drawn")
               : QString();
}

AdjustmentEntry::Drawing OverlayDrawings::OfWatermark(const YDAdjustmentWidget& panel)
{
    const YDWatermarkWidget::Params params = static_cast<const YDWatermarkWidget&>(panel).GetValue();
    const TextOverlay overlay{params.angle,   params.margins,  params.text,
                              params.font,    params.color,    params.blendingMode,
                              params.opacity, params.hrzTiles, params.vrtTiles};
    return [overlay](const RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                     const QRect& boundingRect) {
        return DrawText(overlay, OverlayCanvas(image, selection, offset, boundingRect));
    };
}
