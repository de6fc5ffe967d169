#include "YDThresholdCache.h"

#include "image/YDHistogrammCalculator.h"

#include <QRect>

namespace {

LevelRange BoundsOf(const ChannelHistograms::Table& table)
{
    const std::vector<int> bounds = YDHistogrammCalculator::Threshold(table);
    return {bounds[0], bounds[1]};
}

} // namespace

std::optional<YDThresholdCache::Thresholds> YDThresholdCache::Of(const RGBA32iImage& picture,
                                                                 const std::atomic<bool>* abort)
{
    if (const auto known = Known())
        return known;
    const QRect whole(0, 0, picture.Width(), picture.Height());
    const auto counts = ChannelHistograms::Of(picture, whole, abort);
    if (!counts)
        return std::nullopt;
    const std::lock_guard<std::mutex> lock(m_lock);
    if (!m_thresholds)
        m_thresholds = {BoundsOf(counts->red), BoundsOf(counts->green), BoundsOf(counts->blue),
                        BoundsOf(counts->luma)};
    return m_thresholds;
}

std::optional<YDThresholdCache::Thresholds> YDThresholdCache::Known()
{
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_thresholds;
}
