#include <hwy/highway.h>

#include "image/Luma709.h"
#include "image/VectorKernels.h"
#include "simd/PixelLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

void LumaRow(const YDRGBA32i* row, size_t count, uint8_t* luma)
{
    size_t x = 0;
#if HWY_TARGET != HWY_SCALAR
    const PixelTag d;
    const hn::Rebind<uint8_t, PixelTag> dLuma;
    const Shorts blueRedWeights = PairOfShorts(Luma709::Blue, Luma709::Red);
    const Shorts greenWeight = PairOfShorts(Luma709::Green, 0);
    const Ints half = hn::Set(IntTag(), 1 << (Luma709::Shift - 1));
    const auto* const lane = reinterpret_cast<const uint32_t*>(row);
    for (const size_t lanes = hn::Lanes(d); x + lanes <= count; x += lanes) {
        const Pixels pixels = hn::LoadU(d, lane + x);
        const Ints sum =
            AddProducts(GreenAlpha(pixels), greenWeight, AddProducts(BlueRed(pixels), blueRedWeights, half));
        hn::StoreU(hn::DemoteTo(dLuma, hn::ShiftRight<Luma709::Shift>(sum)), dLuma, luma + x);
    }
#endif
    for (; x < count; ++x)
        luma[x] = static_cast<uint8_t>(Luma709::Of(row[x]));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(LumaRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::LumaRow)::Function LumaRow;

void LumaRow(const YDRGBA32i* row, int count, quint8* luma)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(LumaRow)(row, static_cast<size_t>(count), luma);
}
#endif
