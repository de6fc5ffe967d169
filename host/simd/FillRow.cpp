#include <hwy/highway.h>

#include "image/VectorKernels.h"
#include "simd/FillVectors.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

void FillRow(YDRGBA32i* row, size_t count, const FillRule& rule)
{
    if (rule.fill.a == FillRule::Opaque)
        MapPixels(row, count, rule, OpaqueFillVectors(rule));
    else if (rule.fill.a != 0)
        MapPixels(row, count, rule, FillVectors(rule));
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(FillRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::FillRow)::Function FillRow;

void FillRow(YDRGBA32i* row, int count, const FillRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(FillRow)(row, static_cast<size_t>(count), *rule);
}
#endif
