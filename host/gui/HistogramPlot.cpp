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
constexpr double Headroom = 0.04;    ///< of what reaches the top, above it

/// The share of levels that are at most as frequent as what counts as usual, and how much more frequent than
/// that a level can be without being cut off.
constexpr double UsualShare = 0.98;
constexpr double MostAboveUsual = 1.5;

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
        curves.push_back({&histograms.red, QColor(216, 56, 56), QColor(255, 140, 140)});
    if (channels & HistogramPlot::Green)
        curves.push_back({&histograms.green, QColor(48, 184, 56), QColor(140, 226, 140)});
    if (channels & HistogramPlot::Blue)
        curves.push_back({&histograms.blue, QColor(64, 104, 208), QColor(150, 165, 255)});
    return curves;
}

/// The counts of all curves at the levels that are not clipped.
std::vector<qint64> InnerCounts(const std::vector<Curve>& curves)
{
    std::vector<qint64> counts;
    for (const Curve& curve : curves)
        counts.insert(counts.end(), curve.counts->begin() + 1, curve.counts->end() - 1);
    return counts;
}

qint64 TallestOf(const std::vector<Curve>& curves)
{
    qint64 tallest = 0;
    for (const Curve& curve : curves)
        tallest = std::max(tallest, *std::max_element(curve.counts->begin(), curve.counts->end()));
    return tallest;
}

/// The count that reaches the top.
double TopOf(const std::vector<Curve>& curves, HistogramPlot::Scale scale)
{
    const auto tallest = double(TallestOf(curves));
    if (scale == HistogramPlot::Scale::Logarithmic)
        return tallest;
    std::vector<qint64> counts = InnerCounts(curves);
    const auto rank = counts.begin() + std::ptrdiff_t(double(counts.size()) * UsualShare);
    std::nth_element(counts.begin(), rank, counts.end());
    const auto usual = double(*rank);
    const auto tallestInner = double(*std::max_element(rank, counts.end()));
    if (usual > 0)
        return std::min(tallestInner, usual * MostAboveUsual);
    return tallestInner > 0 ? tallestInner : tallest;
}

double Share(qint64 count, double top, HistogramPlot::Scale scale)
{
    const double share = scale == HistogramPlot::Scale::Linear ? double(count) / top
                                                               : std::log1p(double(count)) / std::log1p(top);
    return std::min(share, 1.0 + Headroom);
}

/// The upper edge of a curve: through the middle of each level's column, flat to the borders.
QPolygonF EdgeOf(const Table& counts, double top, HistogramPlot::Scale scale, const QSizeF& size)
{
    const double columnWidth = size.width() / ChannelHistograms::Levels;
    const double fullHeight = size.height() / (1.0 + Headroom);
    const auto heightOf = [&](qint64 count) { return size.height() - fullHeight * Share(count, top, scale); };
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
    const QColor& base = palette.color(QPalette::Base);
    image.fill(base);
    const std::vector<Curve> curves = CurvesOf(histograms, channels);
    const double top = TopOf(curves, scale);
    if (top == 0.0)
        return image;
    // Where colours overlap they mix as light does, or on a light ground as dyes do.
    const bool isDark = base.lightness() < LightnessOfMidGrey;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(isDark ? QPainter::CompositionMode_Screen
                                      : QPainter::CompositionMode_Multiply);
    for (const Curve& curve : curves) {
        const QPolygonF edge = EdgeOf(*curve.counts, top, scale, size);
        const QColor color = isDark ? curve.onDark : curve.onLight;
        painter.fillPath(AreaBelow(edge, size), color);
        painter.setPen(QPen(color, OutlineWidth));
        painter.drawPolyline(edge);
    }
    return image;
}
