#include "gpu/SelectiveColorsJob.h"

#include <algorithm>

QRect SelectiveColorsJob::Reached() const
{
    if (!HasMask())
        return {0, 0, source.width, source.height};
    const qint64 left = std::max<qint64>(maskX, 0);
    const qint64 top = std::max<qint64>(maskY, 0);
    const qint64 right = std::min<qint64>(maskX + mask.width, source.width);
    const qint64 bottom = std::min<qint64>(maskY + mask.height, source.height);
    if (left >= right || top >= bottom)
        return {};
    return {int(left), int(top), int(right - left), int(bottom - top)};
}
