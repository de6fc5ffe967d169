#include "operations/Watermark.h"

#include "overlay/DrawText.h"
#include "overlay/OverlayCanvas.h"
#include "overlay/TextOverlay.h"

#include <QGuiApplication>

QString operations::Watermark::DefaultText()
{
    return QCoreApplication::translate("YDWatermarkWidget", "Watermark");
}

operations::Task operations::MakeTask(const Watermark& settings)
{
    const TextOverlay overlay{settings.angle,   settings.margins,  settings.text,
                              settings.font,    settings.color,    settings.blendingMode,
                              settings.opacity, settings.hrzTiles, settings.vrtTiles};
    return Task([overlay](const YDAdjustmentJob& job) {
        if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
            return Outcome(job.image,
                           QCoreApplication::translate("Watermark", "Texts need a QGuiApplication."));
        const OverlayCanvas canvas(job.image, job.selection, job.selectionOffset, job.selectionBoundingRect,
                                   job.abort);
        return Outcome(job.image, DrawText(overlay, canvas));
    });
}
