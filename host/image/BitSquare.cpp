#include "image/BitSquare.h"

#include <QtAlgorithms>

#include <algorithm>

namespace {

quint64 BitOfRow(int y) { return quint64(1) << y; }
int LowestBit(quint64 bits) { return static_cast<int>(qCountTrailingZeroBits(bits)); }
int HighestBit(quint64 bits) { return BitSquare::Side - 1 - static_cast<int>(qCountLeadingZeroBits(bits)); }

/// The runs of `open` that hold a bit of `seeds`, which are all in `open`.
quint64 RunsWith(quint64 seeds, quint64 open)
{
    // Towards higher bits: a seed that is added to its run carries to the run's end and clears what it
    // passes; a further seed of the same run is put where nothing is left to carry.
    quint64 filled = (((open + seeds) ^ open) & open) | seeds;
    // Towards lower bits, twice as far at each step; `passable` are the bits from which so far all is open.
    quint64 passable = open;
    for (int step = 1; step < BitSquare::Side; step *= 2) {
        filled |= passable & (filled >> step);
        passable &= passable >> step;
    }
    return filled;
}

/// Lets the bits of a square flow from row to row until nothing moves.
class Flow
{
public:
    Flow(BitSquare& filled, const BitSquare& open) : m_filled(filled.rows), m_open(open.rows) {}

    void Run()
    {
        for (int y = 0; y < BitSquare::Side; ++y)
            if (m_filled[std::size_t(y)] != 0)
                Seed(y, m_filled[std::size_t(y)]);
        while (m_toGoDown != 0) {
            GoDown();
            GoUp();
        }
    }

private:
    using Rows = std::array<quint64, BitSquare::Side>;

    /// Fills the runs of row `y` with these open bits; the row has news for both its neighbours then.
    void Seed(int y, quint64 seeds)
    {
        m_filled[std::size_t(y)] |= RunsWith(seeds, m_open[std::size_t(y)]);
        m_toGoDown |= BitOfRow(y);
        m_toGoUp |= BitOfRow(y);
    }

    void Enter(int y, quint64 bits)
    {
        const quint64 seeds = bits & m_open[std::size_t(y)] & ~m_filled[std::size_t(y)];
        if (seeds != 0)
            Seed(y, seeds);
    }

    void GoDown()
    {
        while (m_toGoDown != 0) {
            const int y = LowestBit(m_toGoDown);
            m_toGoDown &= ~BitOfRow(y);
            if (y + 1 < BitSquare::Side)
                Enter(y + 1, m_filled[std::size_t(y)]);
        }
    }

    void GoUp()
    {
        while (m_toGoUp != 0) {
            const int y = HighestBit(m_toGoUp);
            m_toGoUp &= ~BitOfRow(y);
            if (y > 0)
                Enter(y - 1, m_filled[std::size_t(y)]);
        }
    }

    Rows& m_filled;
    const Rows& m_open;
    quint64 m_toGoDown = 0; ///< the rows that have news for the one below, a bit each
    quint64 m_toGoUp = 0;
};

} // namespace

bool BitSquare::IsEmpty() const
{
    return std::all_of(rows.begin(), rows.end(), [](quint64 row) { return row == 0; });
}

SquareEdges BitSquare::Edges() const
{
    SquareEdges edges{rows.front(), rows.back(), 0, 0};
    for (int y = 0; y < Side; ++y) {
        edges.left |= (rows[std::size_t(y)] & 1) << y;
        edges.right |= (rows[std::size_t(y)] >> (Side - 1)) << y;
    }
    return edges;
}

void BitSquare::Add(const SquareEdges& edges)
{
    rows.front() |= edges.top;
    rows.back() |= edges.bottom;
    for (int y = 0; y < Side; ++y) {
        const quint64 left = edges.left >> y & 1;
        const quint64 right = edges.right >> y & 1;
        rows[std::size_t(y)] |= left | right << (Side - 1);
    }
}

void BitSquare::Keep(const BitSquare& other)
{
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] &= other.rows[y];
}

void BitSquare::Remove(const BitSquare& other)
{
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] &= ~other.rows[y];
}

QRect BitSquare::Bounds() const
{
    quint64 columns = 0;
    quint64 usedRows = 0;
    for (int y = 0; y < Side; ++y) {
        const quint64 row = rows[std::size_t(y)];
        columns |= row;
        usedRows |= quint64(row != 0) << y;
    }
    if (columns == 0)
        return {};
    return {QPoint(LowestBit(columns), LowestBit(usedRows)),
            QPoint(HighestBit(columns), HighestBit(usedRows))};
}

void BitSquare::SpreadThrough(const BitSquare& open) { Flow(*this, open).Run(); }
