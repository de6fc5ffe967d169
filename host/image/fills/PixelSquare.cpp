#include "image/PixelSquare.h"

#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

#include <QtAlgorithms>

#include <algorithm>

namespace {

QRect AreaAt(const RGBA32iImage& image, const QPoint& corner)
{
    return {corner, QSize(std::min(BitSquare::Side, image.Width() - corner.x()),
                          std::min(BitSquare::Side, image.Height() - corner.y()))};
}

} // namespace

PixelSquare::PixelSquare(const RGBA32iImage& image, const QPoint& corner)
    : m_area(AreaAt(image, corner)), m_pixels(image.Row(corner.y()) + corner.x()), m_stride(image.RowLength())
{}

BitSquare PixelSquare::Match(const ColorRange& range, const PixelSquare* next) const
{
    static const auto kernel = AVX2LIB::Find(VectorKernels::MatchSquare);
    BitSquare matches;
    if (kernel)
        kernel(m_pixels, m_stride, m_area.height(), &range, matches.rows.data(),
               next ? next->m_pixels : nullptr);
    else
        MatchPlainly(range, matches);
    if (m_area.width() < BitSquare::Side) // what pads the rows may match too
        for (quint64& row : matches.rows)
            row &= (quint64(1) << m_area.width()) - 1;
    return matches;
}

void PixelSquare::Fill(const FillRule& rule, const BitSquare& bits) const
{
    static const auto kernel = AVX2LIB::Find(VectorKernels::FillSquare);
    if (kernel)
        kernel(m_pixels, m_stride, m_area.height(), bits.rows.data(), &rule);
    else
        FillPlainly(rule, bits);
}

void PixelSquare::MatchPlainly(const ColorRange& range, BitSquare& matches) const
{
    const YDRGBA32i* row = m_pixels;
    for (int y = 0; y < m_area.height(); ++y, row += m_stride)
        for (int x = 0; x < m_area.width(); ++x)
            matches.rows[std::size_t(y)] |= quint64(range.Holds(row[x])) << x;
}

void PixelSquare::FillPlainly(const FillRule& rule, const BitSquare& bits) const
{
    YDRGBA32i* row = m_pixels;
    for (int y = 0; y < m_area.height(); ++y, row += m_stride)
        for (quint64 left = bits.rows[std::size_t(y)]; left != 0; left &= left - 1)
            rule(row[qCountTrailingZeroBits(left)]);
}
