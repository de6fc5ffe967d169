#include "image/FloodFill.h"

#include "image/PoolTasks.h"

#include <QThread>

#include <algorithm>

namespace {

constexpr int Side = BitSquare::Side;

/// So many squares must wait for a visit before other threads are called for help: by then the work is worth
/// their coming.
constexpr std::size_t WaitingForHelp = 8;

constexpr quint64 AllBits = ~quint64(0);

std::size_t SquaresAlong(int pixels) { return (std::size_t(pixels) + Side - 1) / Side; }

} // namespace

FloodFill::FloodFill(const RGBA32iImage& image, const QPoint& start, const ColorRange& range,
                     const FillRule& fill)
    : m_image(image), m_start(start), m_range(range), m_fill(fill), m_columns(SquaresAlong(image.Width())),
      m_rows(SquaresAlong(image.Height())), m_openRows(std::size_t(std::min(image.Height(), Side))),
      m_isKnown(m_columns * m_rows), m_squares(m_columns * m_rows), m_open(m_columns * m_rows * m_openRows)
{
    if (!m_isKnown.IsNull())
        std::fill_n(m_isKnown.At(0), m_columns * m_rows, false);
}

QRect FloodFill::Run()
{
    const std::size_t first = NumberAt(m_start);
    Know(first);
    Queue(first);
    Work([this] { return m_waiting < WaitingForHelp; });
    const std::function<void()> work = [this] { Work([] { return true; }); };
    if (m_waiting > 0)
        RunPoolTasks(std::max(QThread::idealThreadCount(), 1) - 1, work, work);
    return m_painted;
}

std::size_t FloodFill::NumberAt(const QPoint& pixel) const
{
    return std::size_t(pixel.y() / Side) * m_columns + std::size_t(pixel.x() / Side);
}

QRect FloodFill::AreaOf(std::size_t number) const
{
    const QPoint corner(int(number % m_columns) * Side, int(number / m_columns) * Side);
    return {corner, QSize(std::min(Side, m_image.Width() - corner.x()),
                          std::min(Side, m_image.Height() - corner.y()))};
}

/// Visits squares until none is left or `goesOn` says no.
template <class Continue>
void FloodFill::Work(const Continue& goesOn)
{
    QRect painted;
    Visit visit;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (goesOn() && Begin(visit, lock)) {
        lock.unlock();
        painted |= WorkOn(visit);
        lock.lock();
        End(visit);
    }
    m_painted |= painted;
}

/// The visit itself. Returns the smallest rectangle around what was painted.
QRect FloodFill::WorkOn(Visit& visit) const
{
    const QRect area = AreaOf(visit.number);
    BitSquare open = visit.isMatched ? Load(visit.number) : Match(area);
    BitSquare filled;
    filled.Add(visit.entrances);
    if (!visit.isMatched && visit.number == NumberAt(m_start))
        filled.rows[std::size_t(m_start.y() % Side)] |= quint64(1) << m_start.x() % Side;
    filled.Keep(open);
    filled.SpreadThrough(open);
    Paint(area, filled);
    open.Remove(filled);
    if (!open.IsEmpty())
        Store(visit.number, open);
    visit.exits = filled.Edges();
    visit.open = open.Edges();
    return filled.Bounds().translated(area.topLeft());
}

BitSquare FloodFill::Match(const QRect& area) const
{
    BitSquare matches;
    for (int y = 0; y < area.height(); ++y) {
        const YDRGBA32i* const pixels = m_image.Row(area.top() + y) + area.left();
        for (int x = 0; x < area.width(); ++x)
            matches.rows[std::size_t(y)] |= quint64(m_range.Holds(pixels[x])) << x;
    }
    return matches;
}

void FloodFill::Paint(const QRect& area, const BitSquare& bits) const
{
    for (int y = 0; y < area.height(); ++y) {
        YDRGBA32i* const pixels = m_image.Row(area.top() + y) + area.left();
        for (quint64 left = bits.rows[std::size_t(y)]; left != 0; left &= left - 1)
            m_fill(pixels[qCountTrailingZeroBits(left)]);
    }
}

BitSquare FloodFill::Load(std::size_t number) const
{
    BitSquare open;
    std::copy_n(m_open.At(number * m_openRows), m_openRows, open.rows.begin());
    return open;
}

void FloodFill::Store(std::size_t number, const BitSquare& open) const
{
    std::copy_n(open.rows.begin(), m_openRows, m_open.At(number * m_openRows));
}

/// Takes the square that has waited longest; false when all is done.
bool FloodFill::Begin(Visit& visit, std::unique_lock<std::mutex>& lock)
{
    // Who waits here, waits for a thread that visits a square, never for one that is yet to be started.
    ++m_idle;
    m_news.wait(lock, [this] { return m_waiting > 0 || m_visited == 0; });
    --m_idle;
    if (m_waiting == 0)
        return false;
    visit.number = m_first;
    Square& square = m_squares[visit.number];
    m_first = square.next;
    --m_waiting;
    ++m_visited;
    visit.entrances = square.entrances;
    visit.isMatched = square.isMatched;
    square.entrances = {};
    square.state = State::Visited;
    return true;
}

/// Takes the news of a visit to its neighbours.
void FloodFill::End(const Visit& visit)
{
    Square& square = m_squares[visit.number];
    square.open = visit.open;
    square.isMatched = true;
    square.state = State::Resting;
    --m_visited;
    Enter(visit.number, {}); // what came while it was visited
    const std::size_t column = visit.number % m_columns;
    const std::size_t row = visit.number / m_columns;
    if (row > 0)
        Enter(visit.number - m_columns, {0, visit.exits.top, 0, 0});
    if (row + 1 < m_rows)
        Enter(visit.number + m_columns, {visit.exits.bottom, 0, 0, 0});
    if (column > 0)
        Enter(visit.number - 1, {0, 0, 0, visit.exits.left});
    if (column + 1 < m_columns)
        Enter(visit.number + 1, {0, 0, visit.exits.right, 0});
    if (m_idle > 0 && (m_waiting > 1 || (m_waiting == 0 && m_visited == 0)))
        m_news.notify_all();
}

/// Makes the Square of a square that the fill comes to for the first time.
void FloodFill::Know(std::size_t number)
{
    m_isKnown[number] = true;
    m_squares[number] = {{}, {AllBits, AllBits, AllBits, AllBits}, number, State::Resting, false};
}

/// Has a square visited if the fill can come in where it comes to it.
void FloodFill::Enter(std::size_t number, const SquareEdges& entrances)
{
    if (!m_isKnown[number]) {
        if (entrances.IsEmpty())
            return;
        Know(number);
    }
    Square& square = m_squares[number];
    square.entrances = (square.entrances | entrances) & square.open;
    if (square.state == State::Resting && !square.entrances.IsEmpty())
        Queue(number);
}

void FloodFill::Queue(std::size_t number)
{
    m_squares[number].state = State::Waiting;
    if (m_waiting == 0)
        m_first = number;
    else
        m_squares[m_last].next = number;
    m_last = number;
    ++m_waiting;
}
