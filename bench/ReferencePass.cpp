#include "ReferencePass.h"

#include "threads/ParallelRows.h"

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

using RowFunction = void (*)(quint8* row, qsizetype bytes);

void BrightenRow(quint8* row, qsizetype bytes)
{
    std::for_each(row, row + bytes, [](quint8& byte) { byte += byte < 255; });
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void BrightenRowAvx2(quint8* row, qsizetype bytes)
{
    const __m256i one = _mm256_set1_epi8(1);
    qsizetype i = 0;
    for (; i + qsizetype(sizeof(__m256i)) <= bytes; i += qsizetype(sizeof(__m256i))) {
        auto* const vector = reinterpret_cast<__m256i*>(row + i);
        _mm256_storeu_si256(vector, _mm256_adds_epu8(_mm256_loadu_si256(vector), one));
    }
    BrightenRow(row + i, bytes - i);
}
#endif

RowFunction BestRowFunction()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return BrightenRowAvx2;
#endif
    return BrightenRow;
}

} // namespace

void RunReferencePass(const RGBA32iImage& image)
{
    constexpr int ReferenceRowsPerBand = 4;
    static const RowFunction brighten = BestRowFunction();
    ForEachRowBand(0, image.Height(), ReferenceRowsPerBand, nullptr, [&image](int first, int last) {
        for (int y = first; y < last; ++y)
            brighten(reinterpret_cast<quint8*>(image.Row(y)), image.Width() * qsizetype(sizeof(YDRGBA32i)));
    });
}
