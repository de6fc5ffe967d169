#include <hwy/highway.h>

#include "image/VectorKernels.h"
#include "simd/Prefetch.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

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

namespace hn = hwy::HWY_NAMESPACE;

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

constexpr size_t Piece = 16;              // entries that a byte shuffle looks up
constexpr size_t Quarter = TableSize / 4; // bits 6 and 7 of a value choose one

/// Indices of bytes in one piece of each quarter. A byte shuffle reads the low four bits of an index, and
/// answers 0 for one with the top bit set; so a quarter is left out for the values that lack bit 6 or 7.
struct PieceIndices
{
    explicit HWY_INLINE PieceIndices(Bytes values)
    {
        const ByteTag d;
        always = hn::And(values, hn::Set(d, uint8_t(0x7f)));
        withBit6 = hn::Add(always, hn::Set(d, uint8_t(0xc0))); // bit 6 carries the top bit away
        withBit7 = hn::Xor(values, hn::Set(d, uint8_t(0x80)));
        withBoth = hn::Or(withBit6, withBit7);
    }

    Bytes always, withBit6, withBit7, withBoth;
};

/// A table for byte shuffles. Its quarters q0 to q3 are kept as q0, q0 ^ q1, q0 ^ q2 and q0 ^ q1 ^ q2 ^ q3:
/// each quarter is then the exclusive or of those whose number has no bit that its own lacks.
class alignas(Piece) PreparedTable
{
public:
    explicit PreparedTable(const uint8_t* table)
    {
        for (size_t i = 0; i < Quarter; ++i) {
            const uint8_t* const q = table + i;
            m_quarters[i] = q[0];
            m_quarters[Quarter + i] = q[0] ^ q[Quarter];
            m_quarters[2 * Quarter + i] = q[0] ^ q[2 * Quarter];
            m_quarters[3 * Quarter + i] = q[0] ^ q[Quarter] ^ q[2 * Quarter] ^ q[3 * Quarter];
        }
    }

    HWY_INLINE Bytes LookUp(Bytes values) const
    {
        const ByteTag d;
        const hn::Repartition<uint16_t, ByteTag> d16;
        const PieceIndices indices(values);
        const auto words = hn::BitCast(d16, values); // there is no shift of bytes
        const Bytes bit4 = hn::BitCast(d, hn::ShiftLeft<3>(words));
        const Bytes bit5 = hn::BitCast(d, hn::ShiftLeft<2>(words));
        const Bytes low = Choose(bit4, LookUpInPiece(1, indices), LookUpInPiece(0, indices));
        const Bytes high = Choose(bit4, LookUpInPiece(3, indices), LookUpInPiece(2, indices));
        return Choose(bit5, high, low);
    }

private:
    /// What the values are mapped to if they lie in this piece of their quarter.
    HWY_INLINE Bytes LookUpInPiece(size_t piece, const PieceIndices& indices) const
    {
        const ByteTag d;
        const uint8_t* const q = m_quarters + piece * Piece;
        const Bytes q0 = hn::TableLookupBytesOr0(hn::LoadDup128(d, q), indices.always);
        const Bytes q1 = hn::TableLookupBytesOr0(hn::LoadDup128(d, q + Quarter), indices.withBit6);
        const Bytes q2 = hn::TableLookupBytesOr0(hn::LoadDup128(d, q + 2 * Quarter), indices.withBit7);
        const Bytes q3 = hn::TableLookupBytesOr0(hn::LoadDup128(d, q + 3 * Quarter), indices.withBoth);
        return hn::Xor3(hn::Xor(q0, q1), q2, q3);
    }

    uint8_t m_quarters[TableSize];
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

extern "C" Q_DECL_EXPORT decltype(VectorKernels::MapChannelsRow)::Function MapChannelsRow;

void MapChannelsRow(YDRGBA32i* row, int count, const quint8* tables)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(MapChannelsRow)(row, static_cast<size_t>(count), tables);
}
#endif
