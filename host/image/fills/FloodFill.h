#pragma once

#include "image/KVImage.h"
#include "image/LazyArray.h"
#include "image/PixelSquare.h"

#include <QPoint>
#include <QRect>

#include <condition_variable>
#include <cstddef>
#include <mutex>

/// One flood fill of a picture, in squares of 64 x 64 pixels.
///
/// A square is visited when the fill comes to it over an edge: its pixels are matched at its first visit,
/// before any of them changes, the fill spreads through what matched as bits, and what it reached is painted
/// while it is in the cache. So the work is in proportion to the squares that the area lies in. Squares are
/// visited by all cores, each by one at a time.
class FloodFill
{
public:
    /// Over `image` from `start` on, a pixel inside of it, through pixels whose colour `range` holds, as that
    /// of the start does, and lays the colour of `fill` over them.
    FloodFill(const RGBA32iImage& image, const QPoint& start, const ColorRange& range, const FillRule& fill);

    /// Whether there was memory for it. All of it is asked for beforehand, so that a fill that has begun
    /// comes to its end.
    bool IsReady() const { return !m_isKnown.IsNull() && !m_squares.IsNull() && !m_open.IsNull(); }

    /// Fills; once, and only if ready. Returns the smallest rectangle around what was painted.
    QRect Run();

private:
    static constexpr int Side = BitSquare::Side;

    static constexpr std::size_t None = ~std::size_t(0);

    enum class State : quint8
    {
        Resting, ///< until the fill comes to it
        Waiting, ///< for a visit
        Visited, ///< right now
    };

    /// What is known of a square from its first turn on; guarded by m_mutex.
    struct Square
    {
        SquareEdges entrances; ///< where the fill has come to it since the last visit
        SquareEdges open;      ///< where it can come in: matching pixels that are not filled
        std::size_t next;      ///< the one to be visited after it, if it is not the last
        State state;
        bool isMatched; ///< whether it was visited before
    };

    /// A square on one thread.
    struct Visit
    {
        std::size_t number;
        SquareEdges entrances;
        bool isMatched;
        SquareEdges exits; ///< what was filled along the edges
        SquareEdges open;  ///< what is open after it
    };

    std::size_t NumberAt(const QPoint& pixel) const;
    PixelSquare PixelsOf(std::size_t number) const;

    void WorkAlone();
    void WorkWithOthers();
    QRect WorkOn(Visit& visit, std::size_t next) const;
    BitSquare MatchesOf(const PixelSquare& pixels, std::size_t next) const;
    BitSquare Load(std::size_t number) const;
    void Store(std::size_t number, const BitSquare& open) const;

    std::size_t TakeOrWait(std::unique_lock<std::mutex>& lock);
    std::size_t Take();
    void CallTheIdle(bool hasNext);
    void Begin(Visit& visit, std::size_t number) const;
    void End(const Visit& visit);
    void Know(std::size_t number);
    void Enter(std::size_t number, const SquareEdges& entrances);
    void Queue(std::size_t number);

    RGBA32iImage m_image;
    QPoint m_start;
    ColorRange m_range;
    FillRule m_fill;
    std::size_t m_columns;
    std::size_t m_rows;
    std::size_t m_openRows; ///< that are stored of a square

    LazyArray<bool> m_isKnown; ///< whether there is a Square
    LazyArray<Square> m_squares;
    LazyArray<quint64> m_open; ///< the open pixels of squares that have any left

    std::mutex m_mutex;
    std::condition_variable m_news;
    std::size_t m_first = 0; ///< of those that wait
    std::size_t m_last = 0;
    std::size_t m_waiting = 0;
    std::size_t m_taken = 0; ///< by a thread that visits them or will do so next
    int m_idle = 0;          ///< threads that wait for a square
    QRect m_painted;
};
