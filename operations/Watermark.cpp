#include "operations/Watermark.h"

#include "OverlayTask.h"
#include "overlay/DrawText.h"
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
    return OverlayTask([overlay](const OverlayCanvas& canvas) {
        if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
            return canvas.Leave(QCoreApplication::translate("Watermark", "Texts need a QGuiApplication."));
        return DrawText(overlay, canvas);
    });
}
