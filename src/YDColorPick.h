#pragma once

#include "image/KVImage.h"
#include "threads/LatestJob.h"

#include <QObject>
#include <QRect>

#include <functional>
#include <optional>
#include <utility>

/// The average colour of a part of a picture, computed in the background, one at a time.
///
/// A pick that is asked for while another runs follows it. The object may be destroyed at any time; what
/// still runs then is heard of by nobody.
class YDColorPick : public QObject
{
    Q_OBJECT

public:
    /// `source` returns the picture as a pick begins; `fallback` is the colour of an area without a pixel.
    YDColorPick(std::function<RGBA32iImage()> source, const YDRGBA32i& fallback, QObject* parent);

    /// The means of red, green and blue in the part of `area` that lies inside `image`, rounded down, with
    /// alpha 255; `fallback` where there is no such part. Counts and sums have 32 bits and wrap around, so
    /// from about 16.8 million bright pixels on the means are wrong; that is kept, so that an area gives the
    /// curve that it always gave.
    static YDRGBA32i AverageOf(const RGBA32iImage& image, const QRect& area, const YDRGBA32i& fallback);

    /// In picture pixels.
    void SetArea(const QRect& area) { m_area = area; }

    /// Averages the area in the picture, after the pick that runs, if one does.
    void Start() { m_job.Request(); }
    /// Nothing is to be made of the running pick, and none is to follow it.
    void Cancel() { m_job.Abort(); }

    /// The colour that was picked since the last call, if any.
    std::optional<YDRGBA32i> TakeColor() { return std::exchange(m_color, std::nullopt); }

signals:
    /// A colour was picked.
    void Picked();

private:
    LatestJob<YDRGBA32i>::Work MakeAverage() const;

    const std::function<RGBA32iImage()> m_source;
    const YDRGBA32i m_fallback;
    QRect m_area;
    std::optional<YDRGBA32i> m_color;
    LatestJob<YDRGBA32i> m_job{this, [this] { return MakeAverage(); }};
};
