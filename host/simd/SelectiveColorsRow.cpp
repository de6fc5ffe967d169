#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "simd/SelectiveColorsRow.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "image/SelectiveColorsRule.h"
#include "simd/PixelLoop.h"
#include "simd/VectorKernels.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

/// Reckons with inks, the complements of the channels, and with what the ranges' shifts exceed those of the
/// neutrals by: as the weights sum to 255, the neutrals' own weight drops out.
class SelectiveColorsVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit SelectiveColorsVectors(const SelectiveColorsRule&) {}
#else
public:
    explicit HWY_INLINE SelectiveColorsVectors(const SelectiveColorsRule& rule)
        : m_cyan(rule, 0), m_magenta(rule, 1), m_yellow(rule, 2),
          m_leastFactor(hn::Set(IntTag(), rule.relative ? 0 : SelectiveColorsRule::White))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const Pixels colour = hn::Set(PixelTag(), 0x00ffffffu);
        const Pixels inverted = hn::Xor(pixels, colour);
        const Channels inks = Split(inverted);
        const Weights weights = WeightsOf(inks);
        return hn::Xor(colour, Merge({Changed(inks.b, weights, m_yellow), Changed(inks.g, weights, m_magenta),
                                      Changed(inks.r, weights, m_cyan)},
                                     inverted));
    }

private:
    using Rule = SelectiveColorsRule;

    /// The ranges of a pixel that has colour.
    struct Order
    {
        Rule::Range primary;
        Rule::Range secondary;
    };

    /// By a bit each for red ink > green, green ink > blue and blue ink > red. Greys have none, and nothing
    /// has all.
    static constexpr Order Orders[] = {{Rule::Reds, Rule::Yellows},   {Rule::Greens, Rule::Cyans},
                                       {Rule::Blues, Rule::Magentas}, {Rule::Blues, Rule::Cyans},
                                       {Rule::Reds, Rule::Yellows},   {Rule::Greens, Rule::Yellows},
                                       {Rule::Reds, Rule::Magentas},  {Rule::Reds, Rule::Yellows}};
    static constexpr size_t OrderCount = 8;
    static constexpr size_t MostLanes = 16;

    /// What holds for one ink.
    struct Ink
    {
        HWY_INLINE Ink(const Rule& rule, int ink)
            : tones(PairOfShorts(Excess(rule, Rule::Whites, ink), Excess(rule, Rule::Blacks, ink))),
              neutral(hn::Set(IntTag(), Rule::White * rule.shift[Rule::Neutrals][ink]))
        {
            HWY_ALIGN uint32_t pairs[MostLanes];
            for (size_t i = 0; i < MostLanes; ++i) {
                const Order& order = Orders[i % OrderCount];
                pairs[i] = Pair(Excess(rule, order.primary, ink), Excess(rule, order.secondary, ink));
            }
            colours = hn::Load(PixelTag(), pairs);
        }

        static int Excess(const Rule& rule, Rule::Range range, int ink)
        {
            return rule.shift[range][ink] - rule.shift[Rule::Neutrals][ink];
        }
        static uint32_t Pair(int low, int high) { return uint32_t(uint16_t(low)) | uint32_t(high) << 16; }

        Pixels colours; ///< of primary and secondary
        Shorts tones;   ///< of whites and blacks
        Ints neutral;
    };

    struct Weights
    {
        Words colours;
        Words tones;
        Ints order;
    };

    static HWY_INLINE Weights WeightsOf(const Channels& inks)
    {
        const IntTag d;
        const WordTag d16;
        const Ints high = hn::Max(inks.r, inks.g);
        const Ints low = hn::Min(inks.r, inks.g);
        const Ints most = hn::Max(high, inks.b);
        const Ints least = hn::Min(low, inks.b);
        const Ints middle = hn::Max(low, hn::Min(high, inks.b));
        const Ints white = hn::Set(d, Rule::White);
        const auto bit = [](auto mask, int value) {
            return hn::IfThenElseZero(mask, hn::Set(IntTag(), value));
        };
        const Ints colours = hn::Or(hn::Sub(middle, least), hn::ShiftLeft<16>(hn::Sub(most, middle)));
        const Words ends = hn::BitCast(d16, hn::Or(hn::Sub(white, most), hn::ShiftLeft<16>(least)));
        const Words tones = hn::SaturatedSub(hn::Add(ends, ends), hn::Set(d16, uint16_t(Rule::White)));
        const Ints order = hn::Or(hn::Or(bit(hn::Gt(inks.r, inks.g), 1), bit(hn::Gt(inks.g, inks.b), 2)),
                                  bit(hn::Gt(inks.b, inks.r), 4));
        return {hn::BitCast(d16, colours), tones, order};
    }

    HWY_INLINE Ints Changed(Ints channel, const Weights& weights, const Ink& ink) const
    {
        const IntTag d;
        const Pixels colours =
            hn::TableLookupLanes(ink.colours, hn::IndicesFromVec(PixelTag(), weights.order));
        const Ints sum =
            AddProducts(weights.tones, ink.tones,
                        AddProducts(weights.colours, hn::BitCast(ShortTag(), colours), ink.neutral));
        const Ints product = hn::Mul(hn::Or(channel, m_leastFactor), sum);
        return hn::Add(channel, hn::ShiftRight<Rule::ShiftBits>(hn::Add(product, hn::Set(d, Rule::Half))));
    }

    Ink m_cyan;
    Ink m_magenta;
    Ink m_yellow;
    Ints m_leastFactor;
#endif
};

void SelectiveColorsRow(YDRGBA32i* row, size_t count, const SelectiveColorsRule& rule)
{
    MapPixels(row, count, rule, SelectiveColorsVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(SelectiveColorsRow);
} // namespace

void SelectiveColorsRow(YDRGBA32i* row, int count, const SelectiveColorsRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(SelectiveColorsRow)(row, static_cast<size_t>(count), *rule);
}
#endif
