#pragma once

#include "image/BaseTransformation.h"

#include <array>

/// Every rule that maps each colour channel by itself: three tables of 256 entries, alpha untouched.
///
/// The concrete rule fills the tables when it is made; here they are applied.
class ChannelTablesTransformation : public BaseTransformation
{
public:
    using Table = std::array<quint8, 256>;
    /// What a rule of one channel at a time makes of each level of each channel.
    using Ramp = std::array<YDRGBA32i, 256>;

    /// Does at once what made `ramp` of IdentityRamp(), however many rules that were; alpha takes no part.
    explicit ChannelTablesTransformation(const Ramp& ramp);

    /// Every level of every channel, each opaque.
    static Ramp IdentityRamp();

    /// One pixel through the tables.
    void Map(YDRGBA32i& pixel) const
    {
        pixel.b = m_tables[0][pixel.b];
        pixel.g = m_tables[1][pixel.g];
        pixel.r = m_tables[2][pixel.r];
    }

    void ProcessPixel(qsizetype index) const { Map(m_pixels[index]); }
    void ProcessRow(YDRGBA32i* row, int count) const override;

protected:
    /// Identity tables.
    ChannelTablesTransformation();

    /// The same table for red, green and blue.
    void SetTable(const Table& table) { m_tables.fill(table); }

    /// A table each for the composite, red, green and blue, in this order: a channel goes through its own and
    /// its result through the composite's. `strength` mixes that with the original, in per cent: 0 leaves
    /// every level, 100 replaces it; values outside count as the nearest bound.
    void SetTables(const std::array<Table, 4>& tables, int strength);

    /// A table each for red, green and blue.
    void SetTables(const Table& red, const Table& green, const Table& blue) { m_tables = {blue, green, red}; }

    /// `value` rounded to nearest and clamped to 0..255; 0 for a value that is not a number.
    static quint8 ToLevel(double value);

private:
    std::array<Table, 3> m_tables; ///< blue, green, red: the pixel's memory order
};
