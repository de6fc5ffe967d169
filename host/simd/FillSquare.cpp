#include <hwy/highway.h>

#include "image/BitSquare.h"
#include "image/VectorKernels.h"
#include "simd/FillVectors.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

constexpr quint64 AllBits = ~quint64(0);

#if HWY_TARGET == HWY_SCALAR

template <class Vectors>
void FillBits(YDRGBA32i* row, quint64 bits, const FillRule& rule, const Vectors&)
{
    for (; bits != 0; bits &= bits - 1)
        rule(row[hwy::Num0BitsBelowLS1Bit_Nonzero64(bits)]);
}

#else

template <class Vectors>
HWY_INLINE void FillBits(YDRGBA32i* row, quint64 bits, const FillRule&, const Vectors& vectors)
{
    constexpr size_t BitsPerByte = 8;
    const PixelTag d;
    const size_t lanes = hn::Lanes(d);
    auto* const lane = reinterpret_cast<uint32_t*>(row);
    if (bits == AllBits) {
        for (size_t x = 0; x < size_t(BitSquare::Side); x += lanes)
            hn::StoreU(vectors(hn::LoadU(d, lane + x)), d, lane + x);
        return;
    }
    for (size_t x = 0; x < size_t(BitSquare::Side); x += lanes) {
        const auto isFilled = hn::LoadMaskBits(d, reinterpret_cast<const uint8_t*>(&bits) + x / BitsPerByte);
        const Pixels pixels = hn::LoadU(d, lane + x);
        hn::StoreU(hn::IfThenElse(isFilled, vectors(pixels), pixels), d, lane + x);
    }
}

#endif

template <class Vectors>
HWY_INLINE void FillRows(YDRGBA32i* pixels, size_t stride, size_t height, const quint64* bits,
                         const FillRule& rule, const Vectors& vectors)
{
    for (size_t y = 0; y < height; ++y)
        if (bits[y] != 0)
            FillBits(pixels + y * stride, bits[y], rule, vectors);
}

void FillSquare(YDRGBA32i* pixels, size_t stride, size_t height, const quint64* bits, const FillRule& rule)
{
    if (rule.fill.a == FillRule::Opaque)
        FillRows(pixels, stride, height, bits, rule, OpaqueFillVectors(rule));
    else if (rule.fill.a != 0)
        FillRows(pixels, stride, height, bits, rule, FillVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(FillSquare);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::FillSquare)::Function FillSquare;

void FillSquare(YDRGBA32i* pixels, int stride, int height, const quint64* bits, const FillRule* rule)
{
    if (height > 0)
        HWY_DYNAMIC_DISPATCH(FillSquare)
    (pixels, static_cast<size_t>(stride), static_cast<size_t>(height), bits, *rule);
}
#endif
