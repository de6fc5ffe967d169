#include "overlay/DrawStamp.h"

#include "image/OverlayRule.h"
#include "image/Percent.h"
#include "overlay/OverlayArea.h"
#include "overlay/OverlayCanvas.h"
#include "overlay/Stamp.h"
#include "overlay/StampCache.h"

QString DrawStamp(const Stamp& stamp, const OverlayCanvas& canvas)
{
    const QRect area = OverlayArea::Inside(stamp.margins, canvas.Size());
    if (stamp.fileName.isEmpty() || stamp.opacity <= 0 || area.isEmpty())
        return canvas.Leave();
    const StampCache::Picture picture = StampCache::Fitting(stamp.fileName, area.size());
    if (!picture.error.isEmpty())
        return canvas.Leave(picture.error);
    if (canvas.IsAborted())
        return {};
    const QRect place(OverlayArea::Aligned(stamp.alignment, picture.image.size(), area),
                      picture.image.size());
    const auto source = [&](int x, int y, int, YDRGBA32i*) {
        return reinterpret_cast<const YDRGBA32i*>(picture.image.constScanLine(y - place.top())) +
               (x - place.left());
    };
    canvas.Lay(source, place, OverlayRule(stamp.blendingMode, double(stamp.opacity) / FullPercent));
    return {};
}
