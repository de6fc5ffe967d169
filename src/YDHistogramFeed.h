#pragma once

#include "adjustmentgui_export.h"
#include "image/KVImage.h"
#include "image/YDSharedImage.h"

#include <QReadWriteLock>

class HistogramWidget;

/// What an adjustment with a histogram shows in it: its own copy of the source, or a picture that somebody
/// attached instead.
///
/// It belongs to the adjustment's widget and to the GUI thread, as the histogram does.
class ADJUSTMENTGUI_EXPORT YDHistogramFeed
{
public:
    /// `histogram` must not count on any more once the object is gone, as it is when both are part of one
    /// widget.
    explicit YDHistogramFeed(HistogramWidget* histogram);
    ~YDHistogramFeed();
    Q_DISABLE_COPY(YDHistogramFeed)

    /// Keeps `source`, another value of the same pixels, and has it counted.
    void OnSourceChanged(const RGBA32iImage& source);

    /// Has the picture in `image` counted, which must live until another takes its place; null: none.
    void AttachQImage(const YDSharedImage<QImage>* image);
    void AttachRGB32iImage(const YDSharedImage<RGBA32iImage>* image);

    /// Has the picture counted again, after its pixels or the picture in the attached place changed.
    void UpdateHistogramm();

    /// The histogram's channel mask for an index of the panels' channel boxes: 0 (all three), 1 red, 2 green,
    /// 3 blue; all three for any other.
    static int IndexToHistogrammChannel(int index);

private:
    HistogramWidget* const m_histogram;
    QReadWriteLock m_lock;
    YDSharedImage<RGBA32iImage> m_source;
};
