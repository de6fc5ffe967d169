#pragma once

#include <QColor>
#include <QDataStream>

#include <initializer_list>

/// Colours that no control gives and a stream may hold.
namespace TestColors {

/// What a stream holds of a colour: its model, alpha, three components and padding.
inline QByteArray Stored(int model, std::initializer_list<quint16> components)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << qint8(model);
    for (const quint16 component : components)
        stream << component;
    return bytes;
}

inline QByteArray Stored(const QColor& color)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << color;
    return bytes;
}

/// The colour that Stored() gives these bytes of.
inline QColor Read(int model, std::initializer_list<quint16> components)
{
    QColor color;
    QDataStream stream(Stored(model, components));
    stream >> color;
    return color;
}

/// A colour of half-precision floats, by their bits.
inline QColor OfHalves(quint16 alpha, quint16 red, quint16 green, quint16 blue)
{
    return Read(QColor::ExtendedRgb, {alpha, red, green, blue, 0});
}

/// Says that it is valid, and is of no model that there is. Half transparent.
inline QColor OfNoModel() { return Read(77, {0x8000, 9, 9, 9, 9}); }

constexpr quint16 HalfOfOne = 0x3c00;
constexpr quint16 HalfOfInfinity = 0x7c00;
constexpr quint16 HalfOfLowest = 0xfbff; ///< -65504
constexpr quint16 HalfOfHighest = 0x7bff;
constexpr quint16 HalfOfNoNumber = 0x7e00;

/// Says that it is valid, and has not one number in it.
inline QColor NoNumbers() { return OfHalves(HalfOfNoNumber, HalfOfNoNumber, 0xffff, HalfOfNoNumber); }

/// Infinite, far below and far above what a colour is.
inline QColor FarOut() { return OfHalves(HalfOfOne, HalfOfInfinity, HalfOfLowest, HalfOfHighest); }

} // namespace TestColors
