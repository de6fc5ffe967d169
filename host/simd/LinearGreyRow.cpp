#include <hwy/highway.h>

#include "image/LinearGreyRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

#if HWY_TARGET <= HWY_AVX3 // the better sets have the lower numbers

/// The table in eight registers; a permute of words looks up the low six bits of its indices in two of them.
class DecodingTable
{
public:
    explicit HWY_INLINE DecodingTable(const LinearGreyRule::Decoding& decoding)
    {
        const WordTag d;
        const size_t lanes = hn::Lanes(d);
        for (size_t i = 0; i < Registers; ++i)
            m_table[i] = hn::LoadU(d, decoding.data() + i * lanes);
    }

    HWY_INLINE Words LookUp(Words levels) const
    {
        const WordTag d;
        const auto hasBit6 = hn::TestBit(levels, hn::Set(d, uint16_t(0x40)));
        const auto hasBit7 = hn::TestBit(levels, hn::Set(d, uint16_t(0x80)));
        const Words low = hn::IfThenElse(hasBit6, LookUpQuarter(1, levels), LookUpQuarter(0, levels));
        const Words high = hn::IfThenElse(hasBit6, LookUpQuarter(3, levels), LookUpQuarter(2, levels));
        return hn::IfThenElse(hasBit7, high, low);
    }

private:
    static constexpr size_t Registers = 8;

    HWY_INLINE Words LookUpQuarter(size_t quarter, Words levels) const
    {
        return Words{
            _mm512_permutex2var_epi16(m_table[2 * quarter].raw, levels.raw, m_table[2 * quarter + 1].raw)};
    }

    Words m_table[Registers];
};

class LinearGreyVectors
{
public:
    explicit HWY_INLINE LinearGreyVectors(const LinearGreyRule& rule)
        : m_decoding(*rule.decoding), m_blueRed(PairOfShorts(rule.blue, rule.red)),
          m_green(PairOfShorts(rule.green, 0)), m_half(hn::Set(IntTag(), 1 << (rule.shift - 1))),
          m_shift(rule.shift)
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const IntTag d;
        const Words blueRed = m_decoding.LookUp(BlueRed(pixels));
        const Words greenAlpha = m_decoding.LookUp(GreenAlpha(pixels));
        const Ints sum = AddProducts(blueRed, m_blueRed, AddProducts(greenAlpha, m_green, m_half));
        const Ints light = hn::ShiftRightSame(sum, m_shift);
        const Ints bounded = hn::Min(hn::Max(light, hn::Zero(d)), hn::Set(d, LinearGreyRule::Full));
        return WithAlphaOf(pixels, Grey(Encoded(hn::ConvertTo(FloatTag(), bounded))));
    }

private:
    /// LinearGreyRule::Encoded().
    static HWY_INLINE Ints Encoded(Floats light)
    {
        const FloatTag d;
        const auto& coefficients = LinearGreyRule::Curve;
        const Floats x = hn::Mul(light, hn::Set(d, 1.0f / LinearGreyRule::Full));
        const Floats root = hn::Sqrt(hn::Sqrt(x));
        Floats curve = hn::Set(d, coefficients.back());
        for (size_t i = coefficients.size() - 1; i-- > 0;)
            curve = hn::Add(hn::Set(d, coefficients[i]), hn::Mul(root, curve));
        const Floats toe = hn::Add(hn::Mul(x, hn::Set(d, LinearGreyRule::Toe)), hn::Set(d, 0.5f));
        const auto isToe = hn::Le(x, hn::Set(d, LinearGreyRule::EndOfToe));
        return WholePart(hn::IfThenElse(isToe, toe, curve));
    }

    DecodingTable m_decoding;
    Shorts m_blueRed;
    Shorts m_green;
    Ints m_half;
    int m_shift;
};

void LinearGreyRow(YDRGBA32i* row, size_t count, const LinearGreyRule& rule)
{
    MapPixels(row, count, rule, LinearGreyVectors(rule));
}

#else

/// AVX2 has no permute that looks up a table of words, and gathering takes longer than the pixel form.
void LinearGreyRow(YDRGBA32i* row, size_t count, const LinearGreyRule& rule)
{
    std::for_each(row, row + count, rule);
}

#endif

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(LinearGreyRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::LinearGreyRow)::Function LinearGreyRow;

void LinearGreyRow(YDRGBA32i* row, int count, const LinearGreyRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(LinearGreyRow)(row, static_cast<size_t>(count), *rule);
}
#endif
