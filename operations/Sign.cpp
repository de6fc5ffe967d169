#include "operations/Sign.h"

#include "OverlayTask.h"
#include "overlay/DrawStamp.h"
#include "overlay/Stamp.h"

#include <QCoreApplication>

QString operations::WhatIsMissing(const Sign& settings)
{
    return settings.fileName.isEmpty()
               ? QCoreApplication::translate("Sign", "no image is chosen, so nothing is drawn")
               : QString();
}

operations::Task operations::MakeTask(const Sign& settings)
{
    const Stamp stamp{settings.fileName, int(settings.alignment), settings.margins, settings.blendingMode,
                      settings.opacity};
    return OverlayTask([stamp](const OverlayCanvas& canvas) { return DrawStamp(stamp, canvas); });
}
