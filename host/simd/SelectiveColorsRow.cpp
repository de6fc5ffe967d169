#include <hwy/highway.h>

#include "image/SelectiveColorsRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

/// Reckons with inks, the complements of the channels, and with what the ranges' shifts exceed those of the
/// neutrals by: as the weights sum to 255, the neutrals' own weight drops out. Shifts are negated, so that
/// the last sum is the channel rather than the ink.
template <bool IsRelative>
class SelectiveColorsVectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit SelectiveColorsVectors(const SelectiveColorsRule&) {}
#else
public:
    explicit HWY_INLINE SelectiveColorsVectors(const SelectiveColorsRule& rule)
        : m_cyan(rule, 0), m_magenta(rule, 1), m_yellow(rule, 2)
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const Pixels inverted = hn::Xor(pixels, hn::Set(PixelTag(), 0x00ffffffu));
        const Channels inks = Split(inverted);
        const Weights weights = WeightsOf(inks);
        const Ints order = OrderOf(inverted);
        return Merge({Changed(inks.b, weights, order, m_yellow), Changed(inks.g, weights, order, m_magenta),
                      Changed(inks.r, weights, order, m_cyan)},
                     pixels);
    }

private:
    using Rule = SelectiveColorsRule;
    using ByteTag = hn::Repartition<uint8_t, PixelTag>;

    /// The ranges of a pixel that has colour.
    struct Order
    {
        Rule::Range primary;
        Rule::Range secondary;
    };

    /// By a bit each for blue ink <= green ink, green <= red and red <= blue. Greys have all, and nothing has
    /// none.
    static constexpr Order Orders[] = {{Rule::Reds, Rule::Yellows},   {Rule::Blues, Rule::Magentas},
                                       {Rule::Greens, Rule::Cyans},   {Rule::Blues, Rule::Cyans},
                                       {Rule::Reds, Rule::Yellows},   {Rule::Reds, Rule::Magentas},
                                       {Rule::Greens, Rule::Yellows}, {Rule::Reds, Rule::Yellows}};
    static constexpr size_t OrderCount = 8;
    static constexpr size_t MostLanes = 16;
    static constexpr int Whole = 1 << Rule::ShiftBits;

    /// What holds for one ink.
    struct Ink
    {
        HWY_INLINE Ink(const Rule& rule, int ink)
            : tones(PairOfShorts(Excess(rule, Rule::Whites, ink), Excess(rule, Rule::Blacks, ink))),
              neutral(hn::Set(IntTag(),
                              -Rule::White * rule.shift[Rule::Neutrals][ink] - (IsRelative ? Whole : 0)))
        {
            HWY_ALIGN uint32_t pairs[MostLanes];
            for (size_t i = 0; i < MostLanes; ++i) {
                const Order& order = Orders[(MostLanes - i) % OrderCount]; // as OrderOf() negates them
                pairs[i] = Pair(Excess(rule, order.primary, ink), Excess(rule, order.secondary, ink));
            }
            colours = hn::Load(PixelTag(), pairs);
        }

        static int Excess(const Rule& rule, Rule::Range range, int ink)
        {
            return rule.shift[Rule::Neutrals][ink] - rule.shift[range][ink];
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
        const Ints colours = hn::Or(hn::Sub(middle, least), hn::ShiftLeft<16>(hn::Sub(most, middle)));
        const Words ends = hn::BitCast(d16, hn::Or(hn::Sub(white, most), hn::ShiftLeft<16>(least)));
        const Words tones = hn::SaturatedSub(hn::Add(ends, ends), hn::Set(d16, uint16_t(Rule::White)));
        return {hn::BitCast(d16, colours), tones};
    }

    /// Minus the number of each pixel's order, of which the lookup takes the low bits.
    static HWY_INLINE Ints OrderOf(Pixels inks)
    {
        const ByteTag d;
        HWY_ALIGN static constexpr uint32_t NextChannels[] = {0x03000201u, 0x07040605u, 0x0b080a09u,
                                                              0x0f0c0e0du};
        const auto bytes = hn::BitCast(d, inks);
        const auto next =
            hn::BitCast(d, hn::TableLookupBytes(inks, hn::LoadDup128(PixelTag(), NextChannels)));
        const auto isNoMore = hn::VecFromMask(d, hn::Eq(hn::Max(bytes, next), next));
        const auto bits = hn::BitCast(d, hn::Set(PixelTag(), 0x00040201u));
#if HWY_TARGET == HWY_AVX2
        const Words sums{_mm256_maddubs_epi16(bits.raw, isNoMore.raw)};
#else
        const Words sums{_mm512_maddubs_epi16(bits.raw, isNoMore.raw)};
#endif
        return SumOfProducts(sums, PairOfShorts(1, 1));
    }

    static HWY_INLINE Pixels LookUp(Pixels table, Ints order)
    {
#if HWY_TARGET == HWY_AVX2
        return Pixels{_mm256_permutevar8x32_epi32(table.raw, order.raw)};
#else
        return Pixels{_mm512_permutexvar_epi32(order.raw, table.raw)};
#endif
    }

    static HWY_INLINE Ints Changed(Ints channel, const Weights& weights, Ints order, const Ink& ink)
    {
        const IntTag d;
        const Shorts colours = hn::BitCast(ShortTag(), LookUp(ink.colours, order));
        const Ints sum =
            AddProducts(weights.tones, ink.tones, AddProducts(weights.colours, colours, ink.neutral));
        const Ints white = hn::Set(d, (Rule::White << Rule::ShiftBits) + Rule::Half - 1);
        if constexpr (IsRelative)
            return hn::ShiftRight<Rule::ShiftBits>(hn::Add(hn::Mul(channel, sum), white));
        const Ints change = hn::Mul(sum, hn::Set(d, Rule::White));
        return hn::ShiftRight<Rule::ShiftBits>(
            hn::Add(hn::Sub(change, hn::ShiftLeft<Rule::ShiftBits>(channel)), white));
    }

    Ink m_cyan;
    Ink m_magenta;
    Ink m_yellow;
#endif
};

void SelectiveColorsRow(YDRGBA32i* row, size_t count, const SelectiveColorsRule& rule)
{
    if (rule.relative)
        MapPixels(row, count, rule, SelectiveColorsVectors<true>(rule));
    else
        MapPixels(row, count, rule, SelectiveColorsVectors<false>(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(SelectiveColorsRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::SelectiveColorsRow)::Function SelectiveColorsRow;

void SelectiveColorsRow(YDRGBA32i* row, int count, const SelectiveColorsRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(SelectiveColorsRow)(row, static_cast<size_t>(count), *rule);
}
#endif
