#include "image/ChannelTablesTransformation.h"

#include "image/Percent.h"
#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

#include <algorithm>
#include <cmath>
#include <numeric>

ChannelTablesTransformation::ChannelTablesTransformation()
{
    std::iota(m_tables[0].begin(), m_tables[0].end(), quint8(0));
    m_tables.fill(m_tables[0]);
}

ChannelTablesTransformation::ChannelTablesTransformation(const Ramp& ramp)
{
    for (std::size_t level = 0; level < ramp.size(); ++level) {
        m_tables[0][level] = ramp[level].b;
        m_tables[1][level] = ramp[level].g;
        m_tables[2][level] = ramp[level].r;
    }
}

ChannelTablesTransformation::Ramp ChannelTablesTransformation::IdentityRamp()
{
    Ramp ramp;
    for (std::size_t level = 0; level < ramp.size(); ++level) {
        const auto value = static_cast<quint8>(level);
        ramp[level] = YDRGBA32i(value, value, value, 255);
    }
    return ramp;
}

void ChannelTablesTransformation::ProcessRow(YDRGBA32i* row, int count) const
{
    static const auto kernel = AVX2LIB::Find(VectorKernels::MapChannelsRow);
    if (kernel) {
        kernel(row, count, m_tables[0].data());
        return;
    }
    for (int x = 0; x < count; ++x)
        Map(row[x]);
}

void ChannelTablesTransformation::SetTables(const std::array<Table, 4>& tables, int strength)
{
    const Table& composite = tables[0];
    const int share = std::clamp(strength, 0, FullPercent);
    for (std::size_t channel = 1; channel < tables.size(); ++channel) {
        Table& mapped = m_tables[m_tables.size() - channel]; // red comes last in a pixel
        for (int level = 0; level < 256; ++level) {
            const int full = composite[tables[channel][static_cast<std::size_t>(level)]];
            mapped[static_cast<std::size_t>(level)] =
                ToLevel(level + (full - level) * share / double(FullPercent));
        }
    }
}

quint8 ChannelTablesTransformation::ToLevel(double value)
{
    if (!(value > 0.0))
        return 0;
    return value >= 255.0 ? 255 : static_cast<quint8>(std::lround(value));
}
