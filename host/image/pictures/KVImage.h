#pragma once

#include "image/PixelBuffer.h"
#include "image/YDRGBA32i.h"

#include <QImage>
#include <QMetaType>

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>

/// A picture whose rows are padded to whole tiles; a shared value.
///
/// Every copy of a value sees the same pixels; DeepCopy() makes pixels of its own. Rows start at multiples
/// of 64 bytes for the tile widths in use. Reading and copying values is safe from any thread; who writes
/// pixels sees to it that nobody else touches those rows meanwhile.
template <class Pixel, int TileWidth, int TileHeight>
class KVImage
{
    static_assert(TileWidth > 0 && TileHeight > 0, "a tile holds pixels");

public:
    using PixelType = Pixel;

    /// An empty picture, 0 x 0.
    KVImage() = default;

    /// A zeroed picture. Empty where a side is below 1, or where no memory is to be had.
    KVImage(int width, int height) : KVImage(width, height, PixelBuffer::Content::Zeroed) {}

    /// Pixels from row to row of a picture so wide, at least 1.
    static constexpr qint64 RowLengthOf(int width)
    {
        return (qint64(width) + TileWidth - 1) / TileWidth * TileWidth;
    }

    /// A picture with pixels that the caller writes before they are read.
    static KVImage Uninitialized(int width, int height)
    {
        return KVImage(width, height, PixelBuffer::Content::Uninitialized);
    }

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    bool IsEmpty() const { return !m_pixels; }

    /// Pixels from one row to the next: the width rounded up to whole tiles.
    int RowLength() const { return m_rowLength; }

    /// The shared pixels, row after row; null for an empty picture.
    Pixel* Pixels() const { return static_cast<Pixel*>(m_pixels.get()); }

    /// A handle of the pixels' bytes that keeps them alive; null for an empty picture. Equal owners, equal
    /// pixels.
    std::shared_ptr<const unsigned char> SharedPixels() const
    {
        return {m_pixels, static_cast<const unsigned char*>(m_pixels.get())};
    }

    /// Row `y`, 0 at the top; `y` must be inside the picture.
    Pixel* Row(int y) const { return Pixels() + qsizetype(y) * m_rowLength; }

    /// The same picture with pixels of its own, copied on all cores. Empty where no memory is to be had or
    /// `abort`, which may be null, was set meanwhile.
    KVImage DeepCopy(const std::atomic<bool>* abort = nullptr) const
    {
        const KVImage copy = Uninitialized(m_width, m_height);
        return copy.IsEmpty() || copy.CopyFrom(*this, abort) ? copy : KVImage();
    }

    /// Copies the pixels of `source`, a picture of the same size, over this one's. False once `abort`, which
    /// may be null, is set; some of the pixels are copied then. On all cores.
    bool CopyFrom(const KVImage& source, const std::atomic<bool>* abort = nullptr) const
    {
        Q_ASSERT(source.m_width == m_width && source.m_height == m_height);
        return PixelBuffer::CopyRows(source.Pixels(), source.BytesPerLine(), Pixels(), BytesPerLine(),
                                     m_width * qsizetype(sizeof(Pixel)), m_height, abort);
    }

    /// Whether both values see the same pixels.
    bool SharesPixelsWith(const KVImage& other) const { return m_pixels == other.m_pixels; }

    /// Bytes from one row to the next.
    qsizetype BytesPerLine() const { return m_rowLength * qsizetype(sizeof(Pixel)); }

private:
    KVImage(int width, int height, PixelBuffer::Content content)
    {
        if (width < 1 || height < 1 || width > std::numeric_limits<int>::max() - TileWidth)
            return;
        const int rowLength = static_cast<int>(RowLengthOf(width));
        m_pixels = PixelBuffer::Allocate(qsizetype(rowLength) * height * qsizetype(sizeof(Pixel)), content);
        if (!m_pixels)
            return;
        m_width = width;
        m_height = height;
        m_rowLength = rowLength;
    }

    std::shared_ptr<void> m_pixels;
    int m_width = 0;
    int m_height = 0;
    int m_rowLength = 0;
};

using RGBA32iImage = KVImage<YDRGBA32i, 128, 128>;

/// The pixels of `image`, of any format, as a picture of its own; empty for a null image.
RGBA32iImage ImageFromQImage(const QImage& image);

/// A Format_ARGB32 view of the same pixels, which stay alive as long as it does; null for an empty
/// picture. Writing to the view detaches it, as QImage does.
QImage ImageToQImage(const RGBA32iImage& image);

Q_DECLARE_METATYPE(RGBA32iImage)
