#pragma once

#include "image/KVImage.h"

#include <QFutureWatcher>
#include <QObject>
#include <QRect>

#include <optional>

/// The average colour of a part of a picture, computed in the background, one at a time.
///
/// A pick that is asked for while another runs is started by whoever hears of that one's end. The object may
/// be destroyed at any time; what still runs then is heard of by nobody.
class YDColorPick : public QObject
{
    Q_OBJECT

public:
    /// `fallback` is the colour of an area without a pixel.
    YDColorPick(const YDRGBA32i& fallback, QObject* parent);

    /// The means of red, green and blue in the part of `area` that lies inside `image`, rounded down, with
    /// alpha 255; `fallback` where there is no such part. Counts and sums have 32 bits and wrap around, so
    /// from about 16.8 million bright pixels on the means are wrong; that is kept, so that an area gives the
    /// curve that it always gave.
    static YDRGBA32i AverageOf(const RGBA32iImage& image, const QRect& area, const YDRGBA32i& fallback);

    /// In picture pixels.
    void SetArea(const QRect& area) { m_area = area; }

    /// Averages the area in `source`, or remembers to do so while another pick runs.
    void Start(const RGBA32iImage& source);
    /// Nothing is to be made of the running pick, and none is to follow it.
    void Cancel();

    /// The colour of the pick that has ended; nothing if it was cancelled.
    std::optional<YDRGBA32i> Result() const;
    /// The pick that has ended is done with. Returns whether another was asked for meanwhile.
    [[nodiscard]] bool EndAndAskForNext();

signals:
    /// The running pick has ended, with a result or without. Who hears it calls EndAndAskForNext().
    void Finished();

private:
    const YDRGBA32i m_fallback;
    QRect m_area;
    QFutureWatcher<YDRGBA32i> m_watcher;
    bool m_isRunning = false;
    bool m_isPending = false;
};
