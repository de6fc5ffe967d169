#include "image/KVIterativeWBTransformation.h"

#include "image/Illuminant.h"
#include "image/PictureSample.h"
#include "image/SRgb.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <optional>
#include <vector>

namespace {

using Table = ChannelTablesTransformation::Table;
/// A mapping of encoded values, 0..1.
using Curve = std::vector<double>;

constexpr int Levels = 256;
constexpr double MaxLevel = Levels - 1;

constexpr double MostGain = 4.0;    ///< of a channel; its inverse is the least
constexpr double OftenWhite = 0.01; ///< a share of white pixels that is no chance

constexpr double MostExposure = 4.0;     ///< two stops; its inverse is the least
constexpr double WellExposedMean = 0.44; ///< encoded luma of an ordinary picture
constexpr double OutlierShare = 0.05;    ///< at both ends, left out of the mean
constexpr double NearBlack = 0.02;       ///< means nearer to an end tell no more than these
constexpr double NearWhite = 0.98;

Curve GainCurve(double gain)
{
    Curve curve(Levels);
    for (int level = 0; level < Levels; ++level)
        curve[std::size_t(level)] = gain * level / MaxLevel;
    return curve;
}

/// The same as a change of the exposure for dark pixels, ever less for brighter ones, and white stays white:
/// x' = k x / (1 + (k - 1) x) of linear light.
Curve ExposureCurve(double factor)
{
    Curve curve(Levels);
    for (int level = 0; level < Levels; ++level) {
        const double light = SRgb::ToLinear(level / MaxLevel);
        curve[std::size_t(level)] = SRgb::FromLinear(factor * light / (1.0 + (factor - 1.0) * light));
    }
    return curve;
}

/// The mean encoded luma, 0..1, of what is neither among the darkest nor among the brightest.
std::optional<double> TrimmedMeanLuma(const PictureSample& sample)
{
    std::vector<float> lumas;
    lumas.reserve(sample.Cells().size());
    std::transform(sample.Cells().begin(), sample.Cells().end(), std::back_inserter(lumas),
                   [](const PictureSample::Cell& cell) { return cell.Luma(); });
    std::sort(lumas.begin(), lumas.end());
    const auto outliers = std::ptrdiff_t(double(lumas.size()) * OutlierShare);
    const auto first = lumas.begin() + outliers;
    const auto last = lumas.end() - outliers;
    if (first == last)
        return std::nullopt;
    return std::accumulate(first, last, 0.0) / double(last - first) / MaxLevel;
}

/// The factor of ExposureCurve() that makes the mean luma that of an ordinary picture.
std::optional<double> ExposureFactor(const PictureSample& sample)
{
    const std::optional<double> mean = TrimmedMeanLuma(sample);
    if (!mean)
        return std::nullopt;
    const double light = SRgb::ToLinear(std::clamp(*mean, NearBlack, NearWhite));
    const double wanted = SRgb::ToLinear(WellExposedMean);
    const double factor = wanted * (1.0 - light) / (light * (1.0 - wanted));
    return std::clamp(factor, 1.0 / MostExposure, MostExposure);
}

struct ChannelCurves
{
    Curve r;
    Curve g;
    Curve b;
};

ChannelCurves SameForAll(const Curve& curve) { return {curve, curve, curve}; }

/// The share of the sample that is white; of all that is counted from OftenWhite on.
double WhiteShare(const PictureSample& sample)
{
    const auto white = std::count_if(sample.Cells().begin(), sample.Cells().end(),
                                     [](const PictureSample::Cell& cell) { return cell.IsWhite(); });
    return std::min(double(white) / double(sample.Cells().size()) / OftenWhite, 1.0);
}

/// Gains that make the light's colour grey and keep its luma. What is white in the picture was too bright for
/// it in the scene and shall stay white, so where there is such, the gains are raised until none dims a
/// channel.
ChannelCurves WithoutCast(const Illuminant& light, double whiteShare)
{
    const double luma = 0.2126 * light.r + 0.7152 * light.g + 0.0722 * light.b;
    const double brightest = std::max({light.r, light.g, light.b});
    const double level = luma + (brightest - luma) * whiteShare;
    const auto curveOf = [level](double channel) {
        return GainCurve(std::clamp(level / channel, 1.0 / MostGain, MostGain));
    };
    return {curveOf(light.r), curveOf(light.g), curveOf(light.b)};
}

std::optional<ChannelCurves> CurvesFor(const RGBA32iImage& image,
                                       KVWBTransformation::BalanceFunction function)
{
    const PictureSample sample(image);
    if (function == KVWBTransformation::Auto) {
        const std::optional<Illuminant> light = Illuminant::Of(sample);
        return light ? std::optional(WithoutCast(*light, WhiteShare(sample))) : std::nullopt;
    }
    const std::optional<double> factor = ExposureFactor(sample);
    if (!factor)
        return std::nullopt;
    return SameForAll(ExposureCurve(function == KVWBTransformation::Overexposure ? std::min(*factor, 1.0)
                                                                                 : std::max(*factor, 1.0)));
}

bool IsKnown(KVWBTransformation::BalanceFunction function)
{
    return function >= KVWBTransformation::Auto && function <= KVWBTransformation::Underexposure;
}

} // namespace

KVIterativeWBTransformation::KVIterativeWBTransformation(const RGBA32iImage& image,
                                                         KVWBTransformation::BalanceFunction function,
                                                         int strength)
{
    if (!IsKnown(function) || strength <= 0)
        return;
    const std::optional<ChannelCurves> curves = CurvesFor(image, function);
    if (!curves)
        return;
    const auto tableOf = [](const Curve& curve) {
        Table table{};
        std::transform(curve.begin(), curve.end(), table.begin(),
                       [](double value) { return ToLevel(value * MaxLevel); });
        return table;
    };
    Table composite{};
    std::iota(composite.begin(), composite.end(), quint8(0));
    SetTables({composite, tableOf(curves->r), tableOf(curves->g), tableOf(curves->b)}, strength);
}
