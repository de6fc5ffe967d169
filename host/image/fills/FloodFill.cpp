#include "image/FloodFill.h"

#include "threads/PoolTasks.h"

#include <QThread>

#include <algorithm>

namespace {

/// So many squares must wait for a visit before other threads are called for help: by then the work is worth
/// their coming.
constexpr std::size_t WaitingForHelp = 8;

std::size_t SquaresAlong(int pixels) { return (std::size_t(pixels) + BitSquare::Side - 1) / BitSquare::Side; }

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
    WorkAlone();
    const std::function<void()> work = [this] { WorkWithOthers(); };
    if (m_waiting > 0)
        RunPoolTasks(std::max(QThread::idealThreadCount(), 1) - 1, work, work);
    return m_painted;
}

std::size_t FloodFill::NumberAt(const QPoint& pixel) const
{
    return std::size_t(pixel.y() / Side) * m_columns + std::size_t(pixel.x() / Side);
}

PixelSquare FloodFill::PixelsOf(std::size_t number) const
{
    return {m_image, QPoint(int(number % m_columns) * Side, int(number / m_columns) * Side)};
}

/// Visits squares until none is left or so many wait that others shall help.
void FloodFill::WorkAlone()
{
    while (m_waiting > 0 && m_waiting < WaitingForHelp) {
        Visit visit;
        Begin(visit, Take());
        m_painted |= WorkOn(visit, None);
        End(visit);
    }
}

/// Visits squares until none is left; on any number of threads at once.
void FloodFill::WorkWithOthers()
{
    QRect painted;
    std::size_t next = None; // taken beforehand, so that its pixels can be asked for in time
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        const std::size_t number = next != None ? next : TakeOrWait(lock);
        if (number == None)
            break;
        Visit visit;
        Begin(visit, number);
        next = m_waiting > 0 && m_idle == 0 ? Take() : None;
        lock.unlock();
        painted |= WorkOn(visit, next);
        lock.lock();
        End(visit);
        if (m_idle > 0)
            CallTheIdle(next != None);
    }
    m_painted |= painted;
}

/// The visit itself. Returns the smallest rectangle around what was painted.
QRect FloodFill::WorkOn(Visit& visit, std::size_t next) const
{
    const PixelSquare pixels = PixelsOf(visit.number);
    BitSquare open = visit.isMatched ? Load(visit.number) : MatchesOf(pixels, next);
    BitSquare filled;
    filled.Add(visit.entrances);
    if (!visit.isMatched && visit.number == NumberAt(m_start))
        filled.rows[std::size_t(m_start.y() % Side)] |= quint64(1) << m_start.x() % Side;
    filled.Keep(open);
    filled.SpreadThrough(open);
    pixels.Fill(m_fill, filled);
    open.Remove(filled);
    if (!open.IsEmpty())
        Store(visit.number, open);
    visit.exits = filled.Edges();
    visit.open = open.Edges();
    return filled.Bounds().translated(pixels.Area().topLeft());
}

BitSquare FloodFill::MatchesOf(const PixelSquare& pixels, std::size_t next) const
{
    if (next == None)
        return pixels.Match(m_range, nullptr);
    const PixelSquare nextPixels = PixelsOf(next);
    return pixels.Match(m_range, &nextPixels);
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

/// Takes the square that has waited longest; None when all is done.
std::size_t FloodFill::TakeOrWait(std::unique_lock<std::mutex>& lock)
{
    // Who waits here, waits for a thread that is at work on a square, never for one that is yet to start.
    ++m_idle;
    m_news.wait(lock, [this] { return m_waiting > 0 || m_taken == 0; });
    --m_idle;
    return m_waiting > 0 ? Take() : None;
}

std::size_t FloodFill::Take()
{
    const std::size_t number = m_first;
    m_first = m_squares[number].next;
    --m_waiting;
    ++m_taken;
    return number;
}

void FloodFill::CallTheIdle(bool hasNext)
{
    // One that waits is for the thread that has just ended a visit, if it has none yet.
    if (m_waiting > (hasNext ? 0 : 1) || m_taken + m_waiting == 0)
        m_news.notify_all();
}

void FloodFill::Begin(Visit& visit, std::size_t number) const
{
    Square& square = m_squares[number];
    visit.number = number;
    visit.entrances = square.entrances;
    visit.isMatched = square.isMatched;
    square.entrances = {};
    square.state = State::Visited;
}

/// Takes the news of a visit to its neighbours.
void FloodFill::End(const Visit& visit)
{
    Square& square = m_squares[visit.number];
    square.open = visit.open;
    square.isMatched = true;
    square.state = State::Resting;
    --m_taken;
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
}

/// Makes the Square of a square that the fill comes to for the first time.
void FloodFill::Know(std::size_t number)
{
    m_isKnown[number] = true;
    constexpr quint64 All = BitSquare::FullRow;
    m_squares[number] = {{}, {All, All, All, All}, number, State::Resting, false};
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
