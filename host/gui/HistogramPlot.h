#pragma once

#include "image/ChannelHistograms.h"

#include <QImage>
#include <QSizeF>

class QPalette;

/// How the histograms of some channels are drawn.
///
/// Levels go from left to right over the whole width, counts from the bottom upwards. The channels share one
/// scale, so that areas compare. On the linear scale the tallest of the levels 1..254 reaches the top:
/// clipped tones pile up at both ends, and would flatten all the others; they are cut off instead.
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
