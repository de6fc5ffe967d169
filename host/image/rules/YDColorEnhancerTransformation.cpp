#include "image/YDColorEnhancerTransformation.h"

#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

#include <array>
#include <cmath>

namespace {

/// What the dullest colours gain at full amount, of their distance from luma.
constexpr double MostBoost = 0.5;

/// Pixels whose levelled copies stay in the nearest cache.
constexpr int PiecePixels = 256;

void Mix(const YDRGBA32i* levelled, YDRGBA32i* row, int count, const ColorEnhancerRule& rule)
{
    static const auto kernel = AVX2LIB::Find(VectorKernels::EnhanceColorsRow);
    if (kernel) {
        kernel(levelled, row, count, &rule);
        return;
    }
    for (int x = 0; x < count; ++x)
        rule(levelled[x], row[x]);
}

} // namespace

void YDColorEnhancerTransformation::SetAmountData(int amount)
{
    const double share = std::clamp(amount, 0, 100) / 100.0;
    m_rule.take = static_cast<qint16>(std::lround(share * ColorEnhancerRule::Whole));
    m_rule.keep = static_cast<qint16>(ColorEnhancerRule::Whole - m_rule.take);
    m_rule.boost =
        static_cast<qint16>(std::lround(share * share * MostBoost * ColorEnhancerRule::Whole * 256 / 255));
}

void YDColorEnhancerTransformation::operator()(YDRGBA32i& pixel) const
{
    YDRGBA32i levelled = pixel;
    if (m_levels)
        (*m_levels)(levelled);
    m_rule(levelled, pixel);
}

void YDColorEnhancerTransformation::ProcessRow(YDRGBA32i* row, int count) const
{
    std::array<YDRGBA32i, PiecePixels> levelled;
    for (int x = 0; x < count; x += PiecePixels) {
        const int pixels = std::min(PiecePixels, count - x);
        std::copy_n(row + x, pixels, levelled.begin());
        if (m_levels)
            m_levels->ProcessRow(levelled.data(), pixels);
        Mix(levelled.data(), row + x, pixels, m_rule);
    }
}
