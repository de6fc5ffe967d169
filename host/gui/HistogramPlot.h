#pragma once

#include "image/ChannelHistograms.h"

#include <QImage>
#include <QSizeF>

class QPalette;

/// How the histograms of some channels are drawn.
///
/// Levels go from left to right over the whole width, counts from the bottom upwards. The channels share one
/// scale, so that areas compare. On the linear scale a few spikes do not flatten the rest: levels 0 and 255,
/// where clipped tones pile up, and the tallest fiftieth of the others are cut off where they rise above
/// one and a half times what the others reach.
struct HistogramPlot
{
    enum class Scale
    {
        Linear,
        Logarithmic
    };

    static constexpr int Red = 1; ///< the bits of `channels`
    static constexpr int Green = 2;
    static constexpr int Blue = 4;
    static constexpr int AllChannels = Red | Green | Blue;

    int channels = AllChannels; ///< 0: luma
    Scale scale = Scale::Linear;

    /// A picture of the plot for `size` units of the screen, `pixelRatio` pixels to the unit, on the
    /// palette's base colour; null for an empty size.
    QImage Draw(const ChannelHistograms& histograms, const QSizeF& size, double pixelRatio,
                const QPalette& palette) const;
};
