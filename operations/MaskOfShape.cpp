#include "operations/MaskOfShape.h"

#include "operations/CoveragePlane.h"
#include "threads/ParallelRows.h"

#include <algorithm>

namespace {

constexpr int MaskRowsPerBand = 32;
constexpr int From16Bits = 257;

/// A feather of n pixels fades over n pixels to either side: two standard deviations hold 95 % of it.
double SigmaOfFeather(int feather) { return feather / 2.0; }

/// The part of the picture that the blurred shape can reach.
QRect ReachableArea(const QPainterPath& shape, int reach, const QRect& picture)
{
    // Clipped before it is rounded: coordinates of a shape may lie beyond those of integers.
    const QRectF bounds = shape.boundingRect() & QRectF(picture).adjusted(-reach, -reach, reach, reach);
    return bounds.toAlignedRect().adjusted(-reach, -reach, reach, reach) & picture;
}

RGBA32iImage CoverageImage(const CoveragePlane& plane, const QRect& area)
{
    RGBA32iImage image(area.width(), area.height());
    if (image.IsEmpty())
        return image;
    const QPoint origin = area.topLeft() - plane.Area().topLeft();
    ForEachRowBand(0, image.Height(), MaskRowsPerBand, nullptr, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            const quint16* const values = plane.Row(origin.y() + y) + origin.x();
            std::transform(values, values + image.Width(), image.Row(y), [](quint16 value) {
                const auto coverage = quint8((value + From16Bits / 2) / From16Bits);
                return YDRGBA32i(coverage, coverage, coverage, coverage);
            });
        }
    });
    return image;
}

} // namespace

operations::Selection operations::MaskOfShape(const QPainterPath& shape, int feather, const QSize& picture)
{
    const QRect pictureRect(QPoint(0, 0), picture);
    const double sigma = SigmaOfFeather(std::clamp(feather, 0, MaxFeather));
    const QRect reachable = ReachableArea(shape, CoveragePlane::BlurReach(sigma), pictureRect);
    if (reachable.isEmpty())
        return Selection::Of(RGBA32iImage(), QPoint());
    CoveragePlane plane(reachable);
    if (!plane.IsValid() || !plane.Draw(shape) || (sigma > 0 && !plane.Blur(sigma)))
        return Selection::Missing();
    const QRect covered = plane.CoveredArea();
    const RGBA32iImage mask = CoverageImage(plane, covered);
    return mask.IsEmpty() && !covered.isEmpty() ? Selection::Missing()
                                                : Selection::Of(mask, covered.topLeft());
}
