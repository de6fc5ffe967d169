#pragma once

#include <QRgb>
#include <QtGlobal>

/// One pixel: four 8-bit channels, not premultiplied.
///
/// In memory blue, green, red, alpha, which is a QRgb on a little-endian machine, so that rows of pixels
/// and the rows of a Format_ARGB32 image are the same bytes.
struct YDRGBA32i
{
    quint8 b = 0;
    quint8 g = 0;
    quint8 r = 0;
    quint8 a = 0;

    constexpr YDRGBA32i() = default;
    constexpr YDRGBA32i(quint8 blue, quint8 green, quint8 red, quint8 alpha)
        : b(blue), g(green), r(red), a(alpha)
    {}
    constexpr YDRGBA32i(QRgb color)
        : b(static_cast<quint8>(color & 0xff)), g(static_cast<quint8>(color >> 8 & 0xff)),
          r(static_cast<quint8>(color >> 16 & 0xff)), a(static_cast<quint8>(color >> 24 & 0xff))
    {}

    constexpr operator QRgb() const
    {
        return static_cast<QRgb>(a) << 24 | static_cast<QRgb>(r) << 16 | static_cast<QRgb>(g) << 8 | b;
    }

    friend constexpr bool operator==(const YDRGBA32i& x, const YDRGBA32i& y)
    {
        return x.b == y.b && x.g == y.g && x.r == y.r && x.a == y.a;
    }
    friend constexpr bool operator!=(const YDRGBA32i& x, const YDRGBA32i& y) { return !(x == y); }
};

static_assert(sizeof(YDRGBA32i) == 4, "a pixel is 32 bits");
static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the pixel's memory order is that of a little-endian QRgb");
