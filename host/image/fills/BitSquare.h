#pragma once

#include <QRect>
#include <QtGlobal>

#include <array>

/// The bits along the four edges of a BitSquare: columns from bit 0 on for the upper and the lower one, rows
/// for the others.
struct SquareEdges
{
    quint64 top = 0;
    quint64 bottom = 0;
    quint64 left = 0;
    quint64 right = 0;

    bool IsEmpty() const { return (top | bottom | left | right) == 0; }

    SquareEdges operator&(const SquareEdges& other) const
    {
        return {top & other.top, bottom & other.bottom, left & other.left, right & other.right};
    }
    SquareEdges operator|(const SquareEdges& other) const
    {
        return {top | other.top, bottom | other.bottom, left | other.left, right | other.right};
    }
};

/// A bit for each of 64 x 64 pixels: a row a number, its leftmost pixel in the lowest bit.
struct BitSquare
{
    static constexpr int Side = 64;
    static constexpr quint64 FullRow = ~quint64(0);

    std::array<quint64, Side> rows{};

    bool IsEmpty() const;
    SquareEdges Edges() const;

    /// Sets the bits of `edges`.
    void Add(const SquareEdges& edges);

    void Keep(const BitSquare& other);   ///< only the bits that the other has too
    void Remove(const BitSquare& other); ///< the bits that the other has

    /// The smallest rectangle around the set bits; empty if there are none.
    QRect Bounds() const;

    /// Sets every bit of `open` that can be reached from the set bits, which are bits of `open`, over bits of
    /// `open` that are neighbours above, below, left or right.
    void SpreadThrough(const BitSquare& open);
};
