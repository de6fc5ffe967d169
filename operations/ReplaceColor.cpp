#include "operations/ReplaceColor.h"

#include "ColorAtOpacity.h"
#include "image/YDFloodFillHelper.h"

#include <QCoreApplication>

namespace {

using operations::ReplaceColor;

QPoint StartPoint(const RGBA32iImage& image, int position)
{
    const QRect picture(0, 0, image.Width(), image.Height());
    switch (position) {
    case ReplaceColor::RightTop:
        return picture.topRight();
    case ReplaceColor::LeftBottom:
        return picture.bottomLeft();
    case ReplaceColor::RightBottom:
        return picture.bottomRight();
    default:
        return picture.topLeft();
    }
}

operations::Outcome Run(const YDAdjustmentJob& job, const ReplaceColor& settings)
{
    const auto tolerance = quint8(qBound(0, settings.tolerance, 255)); // a stored one may be any
    const YDRGBA32i everyChannel(tolerance, tolerance, tolerance, tolerance);
    RGBA32iImage image = job.image;
    const bool isFilled =
        YDFloodFillHelper::FloodFill(image, StartPoint(image, settings.position), everyChannel,
                                     ColorAtOpacity(settings.color, settings.opacity), nullptr);
    if (isFilled || image.IsEmpty())
        return image;
    return {image,
            QCoreApplication::translate("ReplaceColor", "There may be too little memory for the fill.")};
}

} // namespace

operations::Task operations::MakeTask(const ReplaceColor& settings)
{
    return Task([settings](const YDAdjustmentJob& job) { return Run(job, settings); });
}
