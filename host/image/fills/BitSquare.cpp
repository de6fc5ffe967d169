#include "image/BitSquare.h"

#include <QtAlgorithms>

#include <algorithm>

namespace {

int LowestBit(quint64 bits) { return static_cast<int>(qCountTrailingZeroBits(bits)); }
int HighestBit(quint64 bits) { return BitSquare::Side - 1 - static_cast<int>(qCountLeadingZeroBits(bits)); }

/// The runs of `open` that hold a bit of `seeds`, which are all in `open`.
quint64 RunsWith(quint64 seeds, quint64 open)
{
    // Towards higher bits: a seed that is added to its run carries to the run's end and clears what it
    // passes; a further seed of the same run is put where nothing is left to carry.
    const quint64 higher = ((open + seeds) ^ open) & open;
    // Towards lower bits, twice as far at each step; `passable` are the bits from which so far all is open.
    quint64 lower = seeds;
    quint64 passable = open;
    for (int step = 1; step < BitSquare::Side; step *= 2) {
        lower |= passable & (lower >> step);
        passable &= passable >> step;
    }
    return higher | lower;
}

/// Lets the bits of a square flow from row to row until nothing moves.
class Flow
{
public:
    Flow(BitSquare& filled, const BitSquare& open) : m_filled(filled.rows), m_open(open.rows) {}

    void Run()
    {
        const auto seededRows =
            std::count_if(m_filled.begin(), m_filled.end(), [](quint64 row) { return row != 0; });
        if (seededRows < SeededRowsForSweep)
            SeedRows();
        else
            SweepBothWays();
        while ((m_toGoDown | m_toGoUp) != 0) {
            GoDown();
            GoUp();
        }
    }

private:
    using Rows = std::array<quint64, BitSquare::Side>;
    static constexpr std::size_t LastRow = BitSquare::Side - 1;

    /// From so many rows on it pays to sweep over all of them.
    static constexpr std::ptrdiff_t SeededRowsForSweep = 16;

    void SeedRows()
    {
        for (std::size_t y = 0; y <= LastRow; ++y)
            if (m_filled[y] != 0)
                Seed(y, m_filled[y]);
    }

    /// Takes all rows along once, downwards and upwards by turns, without a look at what changes: neither
    /// sweep waits for the other, so the processor works on both at once.
    void SweepBothWays()
    {
        Widen(0);
        Widen(LastRow);
        for (std::size_t i = 1; i <= LastRow; ++i) {
            TakeAlong(i, i - 1);
            TakeAlong(LastRow - i, LastRow - i + 1);
        }
        for (std::size_t y = 0; y < LastRow; ++y) {
            m_toGoDown |= quint64(Missing(y + 1, m_filled[y]) != 0) << y;
            m_toGoUp |= quint64(Missing(y, m_filled[y + 1]) != 0) << (y + 1);
        }
    }

    void Widen(std::size_t y) { m_filled[y] = RunsWith(m_filled[y], m_open[y]); }

    void TakeAlong(std::size_t y, std::size_t neighbour)
    {
        m_filled[y] = RunsWith(m_filled[y] | (m_filled[neighbour] & m_open[y]), m_open[y]);
    }

    /// Which of `bits` row `y` could have and has not.
    quint64 Missing(std::size_t y, quint64 bits) const { return bits & m_open[y] & ~m_filled[y]; }

    /// Fills the runs of row `y` with these open bits; the row has news for both its neighbours then.
    void Seed(std::size_t y, quint64 seeds)
    {
        m_filled[y] |= RunsWith(seeds, m_open[y]);
        m_toGoDown |= quint64(y < LastRow) << y;
        m_toGoUp |= quint64(y > 0) << y;
    }

    void Enter(std::size_t y, quint64 bits)
    {
        const quint64 seeds = Missing(y, bits);
        if (seeds != 0)
            Seed(y, seeds);
    }

    void GoDown()
    {
        while (m_toGoDown != 0) {
            const auto y = std::size_t(LowestBit(m_toGoDown));
            m_toGoDown &= m_toGoDown - 1;
            Enter(y + 1, m_filled[y]);
        }
    }

    void GoUp()
    {
        while (m_toGoUp != 0) {
            const auto y = std::size_t(HighestBit(m_toGoUp));
            m_toGoUp &= ~(quint64(1) << y);
            Enter(y - 1, m_filled[y]);
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

void BitSquare::SpreadThrough(const BitSquare& open)
{
    const bool isAllOpen =
        std::all_of(open.rows.begin(), open.rows.end(), [](quint64 row) { return row == FullRow; });
    if (!isAllOpen)
        Flow(*this, open).Run();
    else if (!IsEmpty())
        rows.fill(FullRow);
}
