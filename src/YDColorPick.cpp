#include "YDColorPick.h"

#include "image/KVRGBHistogram.h"

#include <algorithm>
#include <array>

namespace {

using Counts = std::array<quint32, 256>;

/// The part of `area` inside `image`. Unlike QRect's own, for corners as far apart as integers get.
QRect Clipped(const QRect& area, const RGBA32iImage& image)
{
    const QPoint topLeft(std::max(area.left(), 0), std::max(area.top(), 0));
    const QPoint bottomRight(std::min(area.right(), image.Width() - 1),
                             std::min(area.bottom(), image.Height() - 1));
    return {topLeft, bottomRight};
}

quint8 Mean(const Counts& counts, quint64 pixels)
{
    quint32 sum = 0;
    for (quint32 level = 0; level < counts.size(); ++level)
        sum += level * counts[level];
    return quint8(sum / pixels); // not above 255: a wrapped sum is only smaller
}

} // namespace

YDColorPick::YDColorPick(std::function<RGBA32iImage()> source, const YDRGBA32i& fallback, QObject* parent)
    : QObject(parent), m_source(std::move(source)), m_fallback(fallback)
{
    connect(&m_job, &LatestJobBase::ResultReadyAt, this, [this](int index) {
        m_color = m_job.ResultAt(index);
        emit Picked();
    });
}

YDRGBA32i YDColorPick::AverageOf(const RGBA32iImage& image, const QRect& area, const YDRGBA32i& fallback)
{
    const QRect part = Clipped(area, image);
    if (part.isEmpty())
        return fallback;
    Counts red{};
    Counts green{};
    Counts blue{};
    const KVRGBHistogram count(red.data(), green.data(), blue.data());
    for (int y = part.top(); y <= part.bottom(); ++y)
        std::for_each(image.Row(y) + part.left(), image.Row(y) + part.right() + 1, count);
    const quint64 pixels = quint64(part.width()) * quint64(part.height());
    return {Mean(blue, pixels), Mean(green, pixels), Mean(red, pixels), 255};
}

LatestJob<YDRGBA32i>::Work YDColorPick::MakeAverage() const
{
    return [source = m_source(), area = m_area, fallback = m_fallback](const std::atomic<bool>&) {
        return AverageOf(source, area, fallback);
    };
}
