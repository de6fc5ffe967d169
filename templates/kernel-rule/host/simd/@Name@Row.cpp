#include <hwy/highway.h>

#include "image/@Name@Rule.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

class @Name@Vectors
{
#if HWY_TARGET == HWY_SCALAR
public:
    explicit @Name@Vectors(const @Name@Rule&) {}
#else
public:
    explicit HWY_INLINE @Name@Vectors(const @Name@Rule& rule)
        : m_lumaOfBlueRed(PairOfShorts(Luma709::Blue, Luma709::Red)),
          m_lumaOfGreen(PairOfShorts(Luma709::Green, 0)), m_take(PairOfShorts(rule.take, 0)),
          m_keepLow(PairOfShorts(rule.keep, 0)), m_keepHigh(PairOfShorts(0, rule.keep))
    {}

    HWY_INLINE Pixels operator()(Pixels pixels) const
    {
        const IntTag d;
        const Words blueRed = BlueRed(pixels);
        const Words greenAlpha = GreenAlpha(pixels);
        const Ints half = hn::Set(d, @Name@Rule::LumaHalf);
        const Ints luma = hn::ShiftRight<@Name@Rule::LumaShift>(
            AddProducts(greenAlpha, m_lumaOfGreen, AddProducts(blueRed, m_lumaOfBlueRed, half)));
        const Ints mixed =
            AddProducts(hn::BitCast(WordTag(), luma), m_take, hn::Set(d, @Name@Rule::Half));
        return Merge({Mix(blueRed, m_keepLow, mixed), Mix(greenAlpha, m_keepLow, mixed),
                      Mix(blueRed, m_keepHigh, mixed)},
                     pixels);
    }

private:
    static HWY_INLINE Ints Mix(Words channels, Shorts keep, Ints mixed)
    {
        const Words scaled = hn::ShiftLeft<@Name@Rule::LumaBits>(channels);
        return hn::ShiftRight<@Name@Rule::Shift>(AddProducts(scaled, keep, mixed));
    }

    Shorts m_lumaOfBlueRed;
    Shorts m_lumaOfGreen;
    Shorts m_take;
    Shorts m_keepLow;
    Shorts m_keepHigh;
#endif
};

void @Name@Row(YDRGBA32i* row, size_t count, const @Name@Rule& rule)
{
    MapPixels(row, count, rule, @Name@Vectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(@Name@Row);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::@Name@Row)::Function @Name@Row;

void @Name@Row(YDRGBA32i* row, int count, const @Name@Rule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(@Name@Row)(row, static_cast<size_t>(count), *rule);
}
#endif
