#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "simd/MapChannelsRow.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "simd/Prefetch.h"
#include "simd/VectorKernels.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

constexpr size_t TableSize = 256;

/// The definition, and the end of every row.
void MapChannelsTail(YDRGBA32i* row, size_t count, const uint8_t* tables)
{
    std::for_each(row, row + count, [tables](YDRGBA32i& pixel) {
        pixel.b = tables[pixel.b];
        pixel.g = tables[TableSize + pixel.g];
        pixel.r = tables[2 * TableSize + pixel.r];
    });
}

#if HWY_TARGET == HWY_SCALAR // one-lane vectors hold no whole pixel

size_t MapChannelsVectors(YDRGBA32i*, size_t, const uint8_t*) { return 0; }

#else

using ByteTag = hn::ScalableTag<uint8_t>;
using Bytes = hn::Vec<ByteTag>;

/// `no` where the byte of `signs` has its top bit clear, else `yes`.
HWY_INLINE Bytes Choose(Bytes signs, Bytes yes, Bytes no)
{
    const ByteTag d;
    const hn::RebindToSigned<ByteTag> dSigned;
    return hn::BitCast(d, hn::IfNegativeThenElse(hn::BitCast(dSigned, signs), hn::BitCast(dSigned, yes),
                                                 hn::BitCast(dSigned, no)));
}

#if HWY_TARGET == HWY_AVX3_DL

/// A table in four registers; a byte permute looks up the low seven bits of its indices in two of them.
class PreparedTable
{
public:
    explicit HWY_INLINE PreparedTable(const uint8_t* table)
    {
        const ByteTag d;
        m_low0 = hn::LoadU(d, table);
        m_low1 = hn::LoadU(d, table + TableSize / 4);
        m_high0 = hn::LoadU(d, table + TableSize / 2);
        m_high1 = hn::LoadU(d, table + TableSize / 4 * 3);
    }

    HWY_INLINE Bytes LookUp(Bytes values) const
    {
        const Bytes low{_mm512_permutex2var_epi8(m_low0.raw, values.raw, m_low1.raw)};
        const Bytes high{_mm512_permutex2var_epi8(m_high0.raw, values.raw, m_high1.raw)};
        return Choose(values, high, low);
    }

private:
    Bytes m_low0, m_low1, m_high0, m_high1;
};

#else

constexpr size_t Piece = 16;        // entries that a byte shuffle looks up
constexpr size_t Group = 4 * Piece; // what bits 4 and 5 of a value choose a piece from

/// Indices of bytes in the pieces of a group. A byte shuffle answers 0 for an index with the top bit set;
/// so a piece is left out for the values that lack bit 4 or 5.
struct PieceIndices
{
    explicit HWY_INLINE PieceIndices(Bytes values)
    {
        const ByteTag d;
        const hn::Repartition<uint16_t, ByteTag> d16;
        const Bytes top = hn::Set(d, uint8_t(0x80));
        const auto words = hn::BitCast(d16, values); // there is no shift of bytes
        const Bytes lacksBit4 = hn::AndNot(hn::BitCast(d, hn::ShiftLeft<3>(words)), top);
        const Bytes lacksBit5 = hn::AndNot(hn::BitCast(d, hn::ShiftLeft<2>(words)), top);
        always = hn::And(values, hn::Set(d, uint8_t(Piece - 1)));
        withBit4 = hn::Or(always, lacksBit4);
        withBit5 = hn::Or(always, lacksBit5);
        withBoth = hn::Or(withBit4, lacksBit5);
    }

    Bytes always, withBit4, withBit5, withBoth;
};

/// A table for byte shuffles. In each group the pieces p0 to p3 are kept as p0, p0 ^ p1, p0 ^ p2 and
/// p0 ^ p1 ^ p2 ^ p3: each piece is then the exclusive or of those whose number has no bit that its own
/// lacks.
class alignas(Piece) PreparedTable
{
public:
    explicit PreparedTable(const uint8_t* table)
    {
        for (size_t group = 0; group < TableSize; group += Group) {
            const uint8_t* const from = table + group;
            uint8_t* const to = m_pieces + group;
            for (size_t i = 0; i < Piece; ++i) {
                to[i] = from[i];
                to[Piece + i] = from[i] ^ from[Piece + i];
                to[2 * Piece + i] = from[i] ^ from[2 * Piece + i];
                to[3 * Piece + i] = to[Piece + i] ^ from[2 * Piece + i] ^ from[3 * Piece + i];
            }
        }
    }

    HWY_INLINE Bytes LookUp(Bytes values) const
    {
        const ByteTag d;
        const PieceIndices indices(values);
        const Bytes bit6 = hn::Add(values, values);
        const Bytes low = Choose(bit6, LookUpInGroup(1, indices), LookUpInGroup(0, indices));
        const Bytes high = Choose(bit6, LookUpInGroup(3, indices), LookUpInGroup(2, indices));
        return Choose(values, high, low);
    }

private:
    HWY_INLINE Bytes LookUpInGroup(size_t group, const PieceIndices& indices) const
    {
        const ByteTag d;
        const uint8_t* const pieces = m_pieces + group * Group;
        const Bytes p0 = hn::TableLookupBytesOr0(hn::LoadDup128(d, pieces), indices.always);
        const Bytes p1 = hn::TableLookupBytesOr0(hn::LoadDup128(d, pieces + Piece), indices.withBit4);
        const Bytes p2 = hn::TableLookupBytesOr0(hn::LoadDup128(d, pieces + 2 * Piece), indices.withBit5);
        const Bytes p3 = hn::TableLookupBytesOr0(hn::LoadDup128(d, pieces + 3 * Piece), indices.withBoth);
        return hn::Xor3(hn::Xor(p0, p1), p2, p3);
    }

    uint8_t m_pieces[TableSize];
};

#endif

/// In each block of sixteen bytes of four vectors, rows of four 32-bit numbers become columns.
HWY_INLINE void Transpose(Bytes& v0, Bytes& v1, Bytes& v2, Bytes& v3)
{
    const ByteTag d;
    const hn::Repartition<uint32_t, ByteTag> d32;
    const hn::Repartition<uint64_t, ByteTag> d64;
    const auto a0 = hn::BitCast(d32, v0), a1 = hn::BitCast(d32, v1);
    const auto a2 = hn::BitCast(d32, v2), a3 = hn::BitCast(d32, v3);
    const auto low01 = hn::BitCast(d64, hn::InterleaveLower(d32, a0, a1));
    const auto low23 = hn::BitCast(d64, hn::InterleaveLower(d32, a2, a3));
    const auto high01 = hn::BitCast(d64, hn::InterleaveUpper(d32, a0, a1));
    const auto high23 = hn::BitCast(d64, hn::InterleaveUpper(d32, a2, a3));
    v0 = hn::BitCast(d, hn::InterleaveLower(d64, low01, low23));
    v1 = hn::BitCast(d, hn::InterleaveUpper(d64, low01, low23));
    v2 = hn::BitCast(d, hn::InterleaveLower(d64, high01, high23));
    v3 = hn::BitCast(d, hn::InterleaveUpper(d64, high01, high23));
}

size_t MapChannelsVectors(YDRGBA32i* row, size_t count, const uint8_t* tables)
{
    const ByteTag d;
    const size_t lanes = hn::Lanes(d);
    const size_t step = 4 * lanes / sizeof(YDRGBA32i);
    if (count < step)
        return 0;
    const PreparedTable blueTable(tables);
    const PreparedTable greenTable(tables + TableSize);
    const PreparedTable redTable(tables + 2 * TableSize);
    HWY_ALIGN static constexpr uint8_t ChannelsTogether[] = {0, 4, 8,  12, 1, 5, 9,  13,
                                                             2, 6, 10, 14, 3, 7, 11, 15};
    const Bytes together = hn::LoadDup128(d, ChannelsTogether); // its own inverse
    size_t x = 0;
    for (; x + step <= count; x += step) {
        auto* const bytes = reinterpret_cast<uint8_t*>(row + x);
        PrefetchAhead(bytes, 4 * lanes);
        Bytes blue = hn::TableLookupBytes(hn::LoadU(d, bytes), together);
        Bytes green = hn::TableLookupBytes(hn::LoadU(d, bytes + lanes), together);
        Bytes red = hn::TableLookupBytes(hn::LoadU(d, bytes + 2 * lanes), together);
        Bytes alpha = hn::TableLookupBytes(hn::LoadU(d, bytes + 3 * lanes), together);
        Transpose(blue, green, red, alpha);
        blue = blueTable.LookUp(blue);
        green = greenTable.LookUp(green);
        red = redTable.LookUp(red);
        Transpose(blue, green, red, alpha);
        hn::StoreU(hn::TableLookupBytes(blue, together), d, bytes);
        hn::StoreU(hn::TableLookupBytes(green, together), d, bytes + lanes);
        hn::StoreU(hn::TableLookupBytes(red, together), d, bytes + 2 * lanes);
        hn::StoreU(hn::TableLookupBytes(alpha, together), d, bytes + 3 * lanes);
    }
    return x;
}

#endif

void MapChannelsRow(YDRGBA32i* row, size_t count, const uint8_t* tables)
{
    const size_t done = MapChannelsVectors(row, count, tables);
    MapChannelsTail(row + done, count - done, tables);
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(MapChannelsRow);
} // namespace

void MapChannelsRow(YDRGBA32i* row, int count, const quint8* tables)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(MapChannelsRow)(row, static_cast<size_t>(count), tables);
}
#endif
