#pragma once

#include "TestPictures.h"
#include "gpu/SelectiveColorsJob.h"
#include "image/YDBlend.h"

#include <QList>
#include <QRandomGenerator>

/// Jobs of selective colours, and what is to become of them.
namespace SelectiveColorsCases {

/// Nine ranges with percentages at random.
inline QList<SelectiveParams> RandomTargets(quint32 seed)
{
    QRandomGenerator random(seed);
    const auto percentage = [&random] { return float(random.bounded(-100, 101)); };
    QList<SelectiveParams> targets;
    for (int i = 0; i < SelectiveParamsList::Ranges; ++i)
        targets.append({percentage(), percentage(), percentage(), percentage()});
    return targets;
}

/// A mask with all that a pixel can be covered by, most often not at all or wholly.
inline RGBA32iImage Mask(int width, int height, quint32 seed)
{
    QRandomGenerator random(seed);
    const RGBA32iImage mask(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto coverage = quint8(qBound(0, random.bounded(-128, 384), 255));
            mask.Row(y)[x] = YDRGBA32i(coverage, coverage, coverage, coverage);
        }
    }
    return mask;
}

/// The job pixel by pixel, by the rule's pixel form and the blend's.
inline RGBA32iImage Expected(const SelectiveColorsJob& job)
{
    const RGBA32iImage expected(job.source.width, job.source.height);
    for (int y = 0; y < expected.Height(); ++y) {
        for (int x = 0; x < expected.Width(); ++x) {
            YDRGBA32i& pixel = expected.Row(y)[x];
            pixel = job.source.Row(y)[x];
            YDRGBA32i adjusted = pixel;
            job.rule(adjusted);
            const qint64 maskX = x - job.maskX;
            const qint64 maskY = y - job.maskY;
            if (!job.HasMask())
                pixel = adjusted;
            else if (maskX >= 0 && maskX < job.mask.width && maskY >= 0 && maskY < job.mask.height)
                YDBlend::YDSourceBySelection()(adjusted, pixel, job.mask.Row(maskY)[maskX]);
        }
    }
    return expected;
}

} // namespace SelectiveColorsCases
