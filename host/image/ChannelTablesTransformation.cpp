#include "image/ChannelTablesTransformation.h"

#include "utilities/AVX2LIB.h"

#include <cmath>
#include <numeric>

ChannelTablesTransformation::ChannelTablesTransformation()
{
    std::iota(m_tables[0].begin(), m_tables[0].end(), quint8(0));
    m_tables.fill(m_tables[0]);
}

void ChannelTablesTransformation::ProcessRow(YDRGBA32i* row, int count) const
{
    using Kernel = void (*)(YDRGBA32i*, int, const quint8*);
    static const auto kernel = AVX2LIB::Find<Kernel>("MapChannelsRow");
    if (kernel) {
        kernel(row, count, m_tables[0].data());
        return;
    }
    for (int x = 0; x < count; ++x)
        Map(row[x]);
}

quint8 ChannelTablesTransformation::ToLevel(double value)
{
    if (!(value > 0.0))
        return 0;
    return value >= 255.0 ? 255 : static_cast<quint8>(std::lround(value));
}
