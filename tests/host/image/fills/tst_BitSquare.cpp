#include "image/BitSquare.h"

#include <QRandomGenerator>
#include <QTest>

#include <deque>

namespace {

constexpr int Side = BitSquare::Side;
constexpr quint64 All = ~quint64(0);

bool Has(const BitSquare& square, int x, int y) { return square.rows[std::size_t(y)] >> x & 1; }
void Set(BitSquare& square, int x, int y) { square.rows[std::size_t(y)] |= quint64(1) << x; }

/// Each bit set with this probability.
BitSquare AnySquare(int percent, QRandomGenerator& random)
{
    BitSquare square;
    for (int y = 0; y < Side; ++y)
        for (int x = 0; x < Side; ++x)
            if (random.bounded(100) < percent)
                Set(square, x, y);
    return square;
}

/// What SpreadThrough() is to do, bit by bit.
BitSquare SpreadPlainly(const BitSquare& seeds, const BitSquare& open)
{
    BitSquare filled = seeds;
    std::deque<QPoint> queue;
    for (int y = 0; y < Side; ++y)
        for (int x = 0; x < Side; ++x)
            if (Has(seeds, x, y))
                queue.emplace_back(x, y);
    while (!queue.empty()) {
        const QPoint at = queue.front();
        queue.pop_front();
        for (const QPoint& step : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
            const QPoint to = at + step;
            if (!QRect(0, 0, Side, Side).contains(to) || !Has(open, to.x(), to.y()) ||
                Has(filled, to.x(), to.y()))
                continue;
            Set(filled, to.x(), to.y());
            queue.push_back(to);
        }
    }
    return filled;
}

BitSquare Spread(BitSquare seeds, const BitSquare& open)
{
    seeds.Keep(open);
    seeds.SpreadThrough(open);
    return seeds;
}

BitSquare SpreadPlainlyFrom(BitSquare seeds, const BitSquare& open)
{
    seeds.Keep(open);
    return SpreadPlainly(seeds, open);
}

} // namespace

class TestBitSquare : public QObject
{
    Q_OBJECT

private slots:
    void SpreadsAsBitByBit_data();
    void SpreadsAsBitByBit();
    void SpreadsFromEachBitOfARow();
    void SpreadsAlongAWindingWay();
    void TellsItsEdges();
    void AddsEdges();
    void KeepsAndRemovesBits();
    void TellsItsBounds_data();
    void TellsItsBounds();
};

void TestBitSquare::SpreadsAsBitByBit_data()
{
    QTest::addColumn<int>("openPercent");
    QTest::addColumn<int>("seedPermille");
    for (const int open : {0, 30, 55, 60, 65, 75, 90, 99, 100})
        for (const int seeds : {0, 1, 5, 100, 500})
            QTest::addRow("%d %% open, %d seeds of 1000", open, seeds) << open << seeds;
}

void TestBitSquare::SpreadsAsBitByBit()
{
    QFETCH(int, openPercent);
    QFETCH(int, seedPermille);
    QRandomGenerator random(11);
    for (int round = 0; round < 50; ++round) {
        const BitSquare open = AnySquare(openPercent, random);
        BitSquare seeds;
        for (int y = 0; y < Side; ++y)
            for (int x = 0; x < Side; ++x)
                if (random.bounded(1000) < seedPermille)
                    Set(seeds, x, y);
        QCOMPARE(Spread(seeds, open).rows, SpreadPlainlyFrom(seeds, open).rows);
    }
}

void TestBitSquare::SpreadsFromEachBitOfARow()
{
    QRandomGenerator random(12);
    BitSquare open;
    open.rows[5] = random.generate64() | random.generate64();
    open.rows[40] = All;
    open.rows[63] = quint64(1) << 63 | 1;
    for (const int y : {5, 40, 63})
        for (int x = 0; x < Side; ++x) {
            BitSquare seeds;
            Set(seeds, x, y);
            QCOMPARE(Spread(seeds, open).rows, SpreadPlainlyFrom(seeds, open).rows);
        }
}

void TestBitSquare::SpreadsAlongAWindingWay()
{
    // Every other row is open and joined to the next at one end, by turns.
    BitSquare open;
    for (std::size_t y = 0; y < Side; ++y)
        open.rows[y] = y % 2 == 0 ? All : y % 4 == 1 ? quint64(1) << 63 : 1;
    for (const int start : {0, 62}) {
        BitSquare seeds;
        Set(seeds, start == 0 ? 0 : 63, start);
        QCOMPARE(Spread(seeds, open).rows, open.rows);
    }
}

void TestBitSquare::TellsItsEdges()
{
    BitSquare square;
    QVERIFY(square.Edges().IsEmpty());
    square.rows[0] = 0b110;
    square.rows[63] = 0b101;
    square.rows[7] = quint64(1) << 63;
    square.rows[20] = 0b11111000; // inside
    const SquareEdges edges = square.Edges();
    QCOMPARE(edges.top, quint64(0b110));
    QCOMPARE(edges.bottom, quint64(0b101));
    QCOMPARE(edges.left, quint64(1) << 63);
    QCOMPARE(edges.right, quint64(1) << 7);
    QVERIFY(!edges.IsEmpty());
}

void TestBitSquare::AddsEdges()
{
    BitSquare square;
    square.rows[9] = 0b100;
    square.Add({0b11, quint64(1) << 62, quint64(1) << 9, quint64(1) << 63});
    BitSquare expected;
    expected.rows[0] = 0b11;
    expected.rows[63] = quint64(1) << 62 | quint64(1) << 63;
    expected.rows[9] = 0b101;
    QCOMPARE(square.rows, expected.rows);
}

void TestBitSquare::KeepsAndRemovesBits()
{
    BitSquare square;
    square.rows[3] = 0b1110;
    BitSquare other;
    other.rows[3] = 0b0111;
    BitSquare kept = square;
    kept.Keep(other);
    QCOMPARE(kept.rows[3], quint64(0b0110));
    square.Remove(other);
    QCOMPARE(square.rows[3], quint64(0b1000));
    QVERIFY(!square.IsEmpty());
    square.Remove(square);
    QVERIFY(square.IsEmpty());
}

void TestBitSquare::TellsItsBounds_data()
{
    QTest::addColumn<QVector<QPoint>>("bits");
    QTest::addColumn<QRect>("bounds");
    QTest::newRow("none") << QVector<QPoint>() << QRect();
    QTest::newRow("the first") << QVector<QPoint>{{0, 0}} << QRect(0, 0, 1, 1);
    QTest::newRow("the last") << QVector<QPoint>{{63, 63}} << QRect(63, 63, 1, 1);
    QTest::newRow("two") << QVector<QPoint>{{5, 60}, {40, 2}} << QRect(5, 2, 36, 59);
    QTest::newRow("corners") << QVector<QPoint>{{0, 63}, {63, 0}} << QRect(0, 0, 64, 64);
}

void TestBitSquare::TellsItsBounds()
{
    QFETCH(QVector<QPoint>, bits);
    QFETCH(QRect, bounds);
    BitSquare square;
    for (const QPoint& bit : bits)
        Set(square, bit.x(), bit.y());
    QCOMPARE(square.Bounds(), bounds);
    QCOMPARE(square.IsEmpty(), bits.isEmpty());
}

QTEST_APPLESS_MAIN(TestBitSquare)
#include "tst_BitSquare.moc"
