#include "gui/HistogramPlot.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using Table = ChannelHistograms::Table;

constexpr int LightnessOfMidGrey = 128;
constexpr double OutlineWidth = 1.0; ///< screen units
constexpr double Headroom = 0.04;    ///< of the height, above the tallest level

struct Curve
{
    const Table* counts;
    QColor onDark;  ///< added to what is there
    QColor onLight; ///< multiplied with what is there
};

std::vector<Curve> CurvesOf(const ChannelHistograms& histograms, int channels)
{
    if (channels == 0)
        return {{&histograms.luma, QColor(176, 176, 176), QColor(112, 112, 112)}};
    std::vector<Curve> curves;
    if (channels & HistogramPlot::Red)
        curves.push_back({&histograms.red, QColor(208, 56, 56), QColor(255, 128, 128)});
    if (channels & HistogramPlot::Green)
        curves.push_back({&histograms.green, QColor(48, 168, 56), QColor(128, 232, 128)});
    if (channels & HistogramPlot::Blue)
        curves.push_back({&histograms.blue, QColor(64, 104, 224), QColor(136, 152, 255)});
    return curves;
}

/// The count that reaches the top.
qint64 TallestOf(const std::vector<Curve>& curves, HistogramPlot::Scale scale)
{
    qint64 inner = 0;
    qint64 outer = 0;
    for (const Curve& curve : curves) {
        inner = std::max(inner, *std::max_element(curve.counts->begin() + 1, curve.counts->end() - 1));
        outer = std::max({outer, curve.counts->front(), curve.counts->back()});
    }
    return scale == HistogramPlot::Scale::Linear && inner > 0 ? inner : std::max(inner, outer);
}

double Share(qint64 count, qint64 tallest, HistogramPlot::Scale scale)
{
    const double share = scale == HistogramPlot::Scale::Linear
                             ? double(count) / double(tallest)
                             : std::log1p(double(count)) / std::log1p(double(tallest));
    return std::min(share, 1.0 + Headroom);
}

/// The upper edge of a curve: through the middle of each level's column, flat to the borders.
QPolygonF EdgeOf(const Table& counts, qint64 tallest, HistogramPlot::Scale scale, const QSizeF& size)
{
    const double columnWidth = size.width() / ChannelHistograms::Levels;
    const double fullHeight = size.height() / (1.0 + Headroom);
    const auto heightOf = [&](qint64 count) {
        return size.height() - fullHeight * Share(count, tallest, scale);
    };
    QPolygonF edge;
    edge.reserve(ChannelHistograms::Levels + 2);
    edge << QPointF(0.0, heightOf(counts.front()));
    for (int level = 0; level < ChannelHistograms::Levels; ++level)
        edge << QPointF((level + 0.5) * columnWidth, heightOf(counts[std::size_t(level)]));
    edge << QPointF(size.width(), heightOf(counts.back()));
    return edge;
}

QPainterPath AreaBelow(const QPolygonF& edge, const QSizeF& size)
{
    QPainterPath area;
    area.moveTo(0.0, size.height());
    for (const QPointF& point : edge)
        area.lineTo(point);
    area.lineTo(size.width(), size.height());
    area.closeSubpath();
    return area;
}

} // namespace

QImage HistogramPlot::Draw(const ChannelHistograms& histograms, const QSizeF& size, double pixelRatio,
                           const QPalette& palette) const
{
    QImage image((size * pixelRatio).toSize(), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.setDevicePixelRatio(pixelRatio);
    const QColor base = palette.color(QPalette::Base);
    image.fill(base);
    const std::vector<Curve> curves = CurvesOf(histograms, channels);
    const qint64 tallest = TallestOf(curves, scale);
    if (tallest == 0)
        return image;
    // Where colours overlap they mix as light does, or on a light ground as dyes do.
    const bool isDark = base.lightness() < LightnessOfMidGrey;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(isDark ? QPainter::CompositionMode_Screen
                                      : QPainter::CompositionMode_Multiply);
    for (const Curve& curve : curves) {
        const QPolygonF edge = EdgeOf(*curve.counts, tallest, scale, size);
        const QColor color = isDark ? curve.onDark : curve.onLight;
        painter.fillPath(AreaBelow(edge, size), color);
        painter.setPen(QPen(color, OutlineWidth));
        painter.drawPolyline(edge);
    }
    return image;
}
