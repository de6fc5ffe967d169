#include "operations/Levels.h"

#include "RuleTask.h"
#include "image/Percent.h"
#include "image/YDIterativeLevelsTransformation.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using operations::Levels;

constexpr std::size_t Low = 0; ///< of a range's ends
constexpr std::size_t High = 1;

// The gammas of the two ends of the input scale and of its middle, in thousandths.
constexpr qint64 GammaAtLow = 9990;
constexpr qint64 GammaAtMiddle = 1000;
constexpr qint64 GammaAtHigh = 10;
constexpr double Thousandth = 0.001;

int BoundedToInt(qint64 value)
{
    return int(std::clamp<qint64>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// The integer part of `value`, toward zero, bounded to what an int holds.
qint64 Truncated(double value)
{
    return qint64(
        std::clamp<double>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

qint64 MidOf(int low, int high) { return (qint64(low) + high) / 2; }

qint64 Quotient(qint64 dividend, qint64 divisor) { return dividend / (divisor == 0 ? 1 : divisor); }

} // namespace

void Levels::Derive()
{
    for (std::size_t i = 0; i < middle.size(); ++i)
        middle[i] = MiddleValue(input[i][Low], input[i][High], gamma[i]);
}

int Levels::MiddleValue(int low, int high, double gamma)
{
    const qint64 mid = MidOf(low, high);
    const qint64 thousandths = std::isnan(gamma) ? GammaAtMiddle : Truncated(gamma * 1000.0);
    if (thousandths > GammaAtMiddle)
        return BoundedToInt(mid + (low - mid) * (thousandths - GammaAtMiddle) / (GammaAtLow - GammaAtMiddle));
    return BoundedToInt(high + (mid - high) * (thousandths - GammaAtHigh) / (GammaAtMiddle - GammaAtHigh));
}

double Levels::ToneValue(int low, int high, int position)
{
    const qint64 mid = MidOf(low, high);
    const qint64 thousandths =
        position >= mid
            ? Quotient((mid - position) * (GammaAtMiddle - GammaAtHigh), high - mid) + GammaAtMiddle
            : Quotient((qint64(low) - position) * (GammaAtLow - GammaAtMiddle), mid - low) + GammaAtLow;
    return BoundedToInt(thousandths) * Thousandth;
}

operations::Task operations::MakeTask(const Levels& settings)
{
    return RuleTask([settings] {
        int input[4][2];
        int output[4][2];
        for (std::size_t channel = 0; channel < settings.input.size(); ++channel) {
            std::copy_n(settings.input[channel].begin(), 2, input[channel]);
            std::copy_n(settings.output[channel].begin(), 2, output[channel]);
        }
        return YDIterativeLevelsTransformation(input, output, settings.gamma.data(), FullPercent);
    });
}
