#include "TestPictures.h"
#include "image/FillRule.h"
#include "image/YDFloodFillHelper.h"
#include "threads/PoolTasks.h"

#include <QRect>
#include <QTest>
#include <QThread>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

namespace {

std::atomic<int> s_allocationsUntilRefusal{-1}; ///< of those that can be refused; negative: none is

/// Refuses one of the allocations to come that can be refused.
class Refusal
{
public:
    explicit Refusal(int number) { s_allocationsUntilRefusal = number; }
    ~Refusal() { s_allocationsUntilRefusal = -1; }
    Q_DISABLE_COPY(Refusal)

    bool CameToPass() const { return s_allocationsUntilRefusal < 0; }
};

} // namespace

void* operator new(std::size_t bytes)
{
    void* const memory = std::malloc(std::max<std::size_t>(bytes, 1));
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept
{
    return s_allocationsUntilRefusal-- == 0 ? nullptr : std::malloc(std::max<std::size_t>(bytes, 1));
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

constexpr YDRGBA32i Ground(40, 80, 120, 255);
constexpr YDRGBA32i Wall(200, 10, 30, 255);
constexpr YDRGBA32i Paint(0, 255, 0, 255);

/// Rows of '.' for ground and '#' for wall; '*' is painted ground.
RGBA32iImage Drawn(const QStringList& rows)
{
    const RGBA32iImage image(rows.first().size(), rows.size());
    for (int y = 0; y < image.Height(); ++y)
        for (int x = 0; x < image.Width(); ++x)
            image.Row(y)[x] = rows[y][x] == '#' ? Wall : rows[y][x] == '*' ? Paint : Ground;
    return image;
}

QStringList Rows(const RGBA32iImage& image)
{
    QStringList rows;
    for (int y = 0; y < image.Height(); ++y) {
        QString row;
        for (int x = 0; x < image.Width(); ++x) {
            const YDRGBA32i pixel = image.Row(y)[x];
            row += QLatin1Char(pixel == Wall ? '#' : pixel == Ground ? '.' : pixel == Paint ? '*' : '?');
        }
        rows << row;
    }
    return rows;
}

YDRGBA32i Same(int tolerance)
{
    const auto channel = quint8(tolerance);
    return {channel, channel, channel, channel};
}

bool IsNear(const YDRGBA32i& a, const YDRGBA32i& b, const YDRGBA32i& tolerance)
{
    return std::abs(a.b - b.b) <= tolerance.b && std::abs(a.g - b.g) <= tolerance.g &&
           std::abs(a.r - b.r) <= tolerance.r;
}

struct Fill
{
    QPoint start;
    YDRGBA32i tolerance;
    YDRGBA32i color;
};

/// What the fill is to do, pixel by pixel. Returns the changed rectangle.
QRect FillPlainly(const RGBA32iImage& image, const Fill& fill)
{
    const YDRGBA32i wanted = image.Row(fill.start.y())[fill.start.x()];
    std::vector<bool> isSeen(std::size_t(image.Width()) * std::size_t(image.Height()));
    std::vector<QPoint> queue;
    const auto visit = [&](const QPoint& p) {
        if (p.x() < 0 || p.y() < 0 || p.x() >= image.Width() || p.y() >= image.Height())
            return;
        const auto index = std::size_t(p.y()) * std::size_t(image.Width()) + std::size_t(p.x());
        if (isSeen[index] || !IsNear(image.Row(p.y())[p.x()], wanted, fill.tolerance))
            return;
        isSeen[index] = true;
        queue.push_back(p);
    };
    QRect changed;
    visit(fill.start);
    for (std::size_t next = 0; next < queue.size(); ++next) {
        const QPoint p = queue[next];
        for (const QPoint& step : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)})
            visit(p + step);
        if (fill.color.a != 0)
            changed |= QRect(p, QSize(1, 1));
    }
    for (const QPoint& p : queue)
        FillRule{fill.color}(image.Row(p.y())[p.x()]);
    return changed;
}

QString Text(const QRect& rect)
{
    return QStringLiteral("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
}

/// How the fill differs from what it is to do; empty if it does not.
QString Difference(const RGBA32iImage& picture, const Fill& fill)
{
    const RGBA32iImage expected = picture.DeepCopy();
    const QRect expectedChange = FillPlainly(expected, fill);
    RGBA32iImage actual = picture.DeepCopy();
    QRect change(1, 2, 3, 4);
    if (!YDFloodFillHelper::FloodFill(actual, fill.start, fill.tolerance, fill.color, &change))
        return QStringLiteral("no fill");
    if (change != expectedChange)
        return QStringLiteral("changed %1 instead of %2").arg(Text(change), Text(expectedChange));
    for (int y = 0; y < actual.Height(); ++y)
        for (int x = 0; x < actual.Width(); ++x)
            if (actual.Row(y)[x] != expected.Row(y)[x])
                return QStringLiteral("%1 instead of %2 at %3,%4")
                    .arg(QString::number(QRgb(actual.Row(y)[x]), 16),
                         QString::number(QRgb(expected.Row(y)[x]), 16))
                    .arg(x)
                    .arg(y);
    return {};
}

/// A picture of ground with walls where `isWall(x, y)` says so.
template <class IsWall>
RGBA32iImage Walled(int width, int height, const IsWall& isWall)
{
    const RGBA32iImage image = RGBA32iImage::Uninitialized(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.Row(y)[x] = isWall(x, y) ? Wall : Ground;
    return image;
}

/// Teeth of ground that hang together at the top alone.
RGBA32iImage Comb(int width, int height)
{
    return Walled(width, height, [](int x, int y) { return y > 0 && x % 2 == 1; });
}

/// One way of ground, a pixel wide, that winds from the left upper corner to the middle.
RGBA32iImage Spiral(int width, int height)
{
    const RGBA32iImage image = Walled(width, height, [](int, int) { return true; });
    QRect free(0, 0, width, height);
    QPoint at(0, 0);
    image.Row(0)[0] = Ground;
    const auto walkTo = [&](const QPoint& end) {
        const QPoint step((end.x() > at.x()) - (end.x() < at.x()), (end.y() > at.y()) - (end.y() < at.y()));
        while (at != end) {
            at += step;
            image.Row(at.y())[at.x()] = Ground;
        }
    };
    while (free.width() > 2 && free.height() > 2) {
        walkTo(free.topRight());
        walkTo(free.bottomRight());
        walkTo(free.bottomLeft());
        walkTo(free.topLeft() + QPoint(0, 2));
        free.adjust(2, 2, -2, -2);
        walkTo(free.topLeft());
    }
    return image;
}

using MakePicture = RGBA32iImage (*)(int width, int height, QRandomGenerator& random);

RGBA32iImage AnyColours(int width, int height, QRandomGenerator& random)
{
    return TestPictures::Random(width, height, random.generate());
}

/// Ground and walls at random, the ground with alphas of all sorts; mostly ground, or much of it is cut off.
RGBA32iImage AnyWalls(int width, int height, QRandomGenerator& random)
{
    const int wallPercent = random.bounded(60);
    const RGBA32iImage image =
        Walled(width, height, [&](int, int) { return random.bounded(100) < wallPercent; });
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (image.Row(y)[x] == Ground)
                image.Row(y)[x].a = quint8(random.bounded(4) == 0 ? random.bounded(256) : 255);
    return image;
}

/// Lines at random, which leave rooms with few doors.
RGBA32iImage AnyRooms(int width, int height, QRandomGenerator& random)
{
    const int column = random.bounded(2, 20);
    const int row = random.bounded(2, 20);
    return Walled(width, height, [&](int x, int y) {
        return (x % column == column - 1 || y % row == row - 1) && random.bounded(20) != 0;
    });
}

/// Greys that wander from pixel to pixel.
RGBA32iImage AnyTexture(int width, int height, QRandomGenerator& random)
{
    const RGBA32iImage image(width, height);
    int level = 128;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            level = std::clamp(level + random.bounded(-8, 9), 0, 255);
            image.Row(y)[x] = {quint8(level), quint8(255 - level), quint8(level / 2), 255};
        }
    return image;
}

/// Sizes at and around the boundaries of what is done at a time, and any up to 300.
int AnySide(QRandomGenerator& random)
{
    constexpr int Borders[] = {1, 2, 63, 64, 65, 127, 128, 129, 191, 192, 193, 255, 256, 257};
    return random.bounded(2) == 0 ? Borders[random.bounded(int(std::size(Borders)))] : random.bounded(1, 301);
}

constexpr QRgb Black = 0xff000000;
constexpr QRgb White = 0xffffffff;

} // namespace

Q_DECLARE_METATYPE(MakePicture)

class TestYDFloodFillHelper : public QObject
{
    Q_OBJECT

private slots:
    void FillsWhatHangsTogether_data();
    void FillsWhatHangsTogether();
    void MatchesWithinTheToleranceOfEachChannel_data();
    void MatchesWithinTheToleranceOfEachChannel();
    void ComparesWithTheStartAsItWas();
    void LaysTheColourOverByItsAlpha();
    void AlphaTakesNoPartInTheMatch();
    void ReportsTheChangedRectangle_data();
    void ReportsTheChangedRectangle();
    void ReportsPixelsThatHadTheColourBefore();
    void OpacityNoughtChangesNothing();
    void RefusesAStartOutside_data();
    void RefusesAStartOutside();
    void LeavesThePictureAloneWithoutMemory();
    void FillsAnyPictureAsPixelByPixel_data();
    void FillsAnyPictureAsPixelByPixel();
    void FillsFromEveryCorner();
    void FillsWindingPictures_data();
    void FillsWindingPictures();
    void NeedsLittleStack();
    void TouchesNoMoreThanTheArea();
    void FillsInATaskOfAFullPool();
};

void TestYDFloodFillHelper::FillsWhatHangsTogether_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("one pixel") << QStringList{"."} << QPoint(0, 0) << QStringList{"*"};
    QTest::newRow("a row") << QStringList{"..#.."} << QPoint(0, 0) << QStringList{"**#.."};
    QTest::newRow("a column") << QStringList{".", ".", "#", "."} << QPoint(0, 1)
                              << QStringList{"*", "*", "#", "."};
    QTest::newRow("not over corners")
        << QStringList{".#.", "#.#", ".#."} << QPoint(1, 1) << QStringList{".#.", "#*#", ".#."};
    QTest::newRow("a wall is filled too")
        << QStringList{".##", "..#", "#.."} << QPoint(1, 0) << QStringList{".**", "..*", "#.."};
    QTest::newRow("into an arch from below")
        << QStringList{"#####", "#...#", "#.#.#", "..#.#"} << QPoint(0, 3)
        << QStringList{"#####", "#***#", "#*#*#", "**#*#"};
    QTest::newRow("round an island") << QStringList{"....", ".##.", ".#..", "...."} << QPoint(3, 3)
                                     << QStringList{"****", "*##*", "*#**", "****"};
    QTest::newRow("what was filled before is a wall")
        << QStringList{"..*..", "..*.."} << QPoint(4, 1) << QStringList{"..***", "..***"};
}

void TestYDFloodFillHelper::FillsWhatHangsTogether()
{
    QFETCH(QStringList, before);
    QFETCH(QPoint, start);
    QFETCH(QStringList, after);
    RGBA32iImage image = Drawn(before);
    QVERIFY(YDFloodFillHelper::FloodFill(image, start, Same(0), Paint, nullptr));
    // A filled wall is painted as filled ground is.
    QCOMPARE(Rows(image), after);
}

void TestYDFloodFillHelper::MatchesWithinTheToleranceOfEachChannel_data()
{
    QTest::addColumn<QRgb>("start");
    QTest::addColumn<QRgb>("neighbour");
    QTest::addColumn<QRgb>("tolerance");
    QTest::addColumn<bool>("matches");
    QTest::newRow("the same") << 0xff101010u << 0xff101010u << 0u << true;
    QTest::newRow("red above") << 0xff101010u << 0xff111010u << 0u << false;
    QTest::newRow("red just below") << 0xff101010u << 0xff0c1010u << 0x040000u << true;
    QTest::newRow("red too far below") << 0xff101010u << 0xff0b1010u << 0x040000u << false;
    QTest::newRow("red just above") << 0xff101010u << 0xff141010u << 0x040000u << true;
    QTest::newRow("red too far above") << 0xff101010u << 0xff151010u << 0x040000u << false;
    QTest::newRow("green just above") << 0xff101010u << 0xff101410u << 0x000400u << true;
    QTest::newRow("green too far above") << 0xff101010u << 0xff101510u << 0x000400u << false;
    QTest::newRow("blue just below") << 0xff101010u << 0xff10100cu << 0x000004u << true;
    QTest::newRow("blue too far below") << 0xff101010u << 0xff10100bu << 0x000004u << false;
    QTest::newRow("another channel's tolerance") << 0xff101010u << 0xff111010u << 0x00ffffu << false;
    QTest::newRow("tolerance past black") << 0xff020202u << Black << 0x050505u << true;
    QTest::newRow("not wrapped from black") << 0xff020202u << White << 0x050505u << false;
    QTest::newRow("tolerance past white") << 0xfffdfdfdu << White << 0x050505u << true;
    QTest::newRow("not wrapped from white") << 0xfffdfdfdu << Black << 0x050505u << false;
    QTest::newRow("all but the farthest") << Black << White << 0xfefefeu << false;
    QTest::newRow("all") << Black << White << 0xffffffu << true;
}

void TestYDFloodFillHelper::MatchesWithinTheToleranceOfEachChannel()
{
    QFETCH(QRgb, start);
    QFETCH(QRgb, neighbour);
    QFETCH(QRgb, tolerance);
    QFETCH(bool, matches);
    // The neighbour at many places of the row, some of which are matched many at a time.
    for (int width = 2; width <= 70; ++width) {
        RGBA32iImage image(width, 1);
        std::fill_n(image.Row(0), width, YDRGBA32i(start));
        image.Row(0)[width - 1] = YDRGBA32i(neighbour);
        QVERIFY(YDFloodFillHelper::FloodFill(image, QPoint(0, 0), YDRGBA32i(tolerance), Paint, nullptr));
        QCOMPARE(image.Row(0)[width - 2] == Paint, true);
        QCOMPARE(image.Row(0)[width - 1] == Paint, matches);
    }
}

void TestYDFloodFillHelper::ComparesWithTheStartAsItWas()
{
    // A ramp: each pixel is near its neighbour, the eleventh no longer near the first.
    RGBA32iImage image(256, 1);
    for (int x = 0; x < 256; ++x)
        image.Row(0)[x] = YDRGBA32i(quint8(x), quint8(x), quint8(x), 255);
    QRect changed;
    // The paint itself is a colour of the area.
    QVERIFY(YDFloodFillHelper::FloodFill(image, QPoint(0, 0), Same(10), YDRGBA32i(5, 5, 5, 255), &changed));
    QCOMPARE(changed, QRect(0, 0, 11, 1));
    QCOMPARE(int(image.Row(0)[10].b), 5);
    QCOMPARE(int(image.Row(0)[11].b), 11);
}

void TestYDFloodFillHelper::LaysTheColourOverByItsAlpha()
{
    RGBA32iImage image = Walled(3, 1, [](int x, int) { return x == 2; });
    image.Row(0)[1].a = 0;
    QVERIFY(YDFloodFillHelper::FloodFill(image, QPoint(0, 0), Same(0), YDRGBA32i(0, 255, 255, 127), nullptr));
    // (0 * 127 + 40 * 128) / 255 = 20.1, (255 * 127 + 80 * 128) / 255 = 167.2, ... + 120 * 128: 187.2
    QCOMPARE(QRgb(image.Row(0)[0]), QRgb(YDRGBA32i(20, 167, 187, 255)));
    QCOMPARE(QRgb(image.Row(0)[1]), QRgb(YDRGBA32i(0, 255, 255, 127)));
    QCOMPARE(QRgb(image.Row(0)[2]), QRgb(Wall));
}

void TestYDFloodFillHelper::AlphaTakesNoPartInTheMatch()
{
    RGBA32iImage image = Walled(256, 2, [](int, int) { return false; });
    for (int x = 0; x < 256; ++x)
        image.Row(0)[x].a = quint8(x);
    const YDRGBA32i noTolerance(0, 0, 0, 0);
    QVERIFY(YDFloodFillHelper::FloodFill(image, QPoint(255, 1), noTolerance, Paint, nullptr));
    QCOMPARE(Rows(image), QStringList({QString(256, '*'), QString(256, '*')}));
}

void TestYDFloodFillHelper::ReportsTheChangedRectangle_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("room");
    QTest::newRow("one pixel") << QSize(1, 1) << QRect(0, 0, 1, 1);
    QTest::newRow("inside a block") << QSize(300, 200) << QRect(3, 5, 20, 30);
    QTest::newRow("a block") << QSize(300, 200) << QRect(64, 64, 64, 64);
    QTest::newRow("over blocks") << QSize(300, 200) << QRect(63, 1, 130, 129);
    QTest::newRow("all") << QSize(300, 200) << QRect(0, 0, 300, 200);
    QTest::newRow("the right lower corner") << QSize(300, 200) << QRect(299, 199, 1, 1);
    QTest::newRow("a column") << QSize(300, 200) << QRect(128, 0, 1, 200);
    QTest::newRow("a row") << QSize(300, 200) << QRect(0, 127, 300, 1);
}

void TestYDFloodFillHelper::ReportsTheChangedRectangle()
{
    QFETCH(QSize, size);
    QFETCH(QRect, room);
    RGBA32iImage image =
        Walled(size.width(), size.height(), [&](int x, int y) { return !room.contains(x, y); });
    QRect changed;
    QVERIFY(YDFloodFillHelper::FloodFill(image, room.center(), Same(0), Paint, &changed));
    QCOMPARE(changed, room);
}

void TestYDFloodFillHelper::ReportsPixelsThatHadTheColourBefore()
{
    RGBA32iImage image = Drawn({"**#", "###"});
    QRect changed;
    QVERIFY(YDFloodFillHelper::FloodFill(image, QPoint(0, 0), Same(0), Paint, &changed));
    QCOMPARE(changed, QRect(0, 0, 2, 1));
    QCOMPARE(Rows(image), QStringList({"**#", "###"}));
}

void TestYDFloodFillHelper::OpacityNoughtChangesNothing()
{
    RGBA32iImage image = Drawn({"..#", "..."});
    QRect changed(0, 0, 1, 1);
    QVERIFY(YDFloodFillHelper::FloodFill(image, QPoint(0, 0), Same(255), YDRGBA32i(1, 2, 3, 0), &changed));
    QVERIFY(changed.isEmpty());
    QCOMPARE(Rows(image), QStringList({"..#", "..."}));
}

void TestYDFloodFillHelper::RefusesAStartOutside_data()
{
    constexpr int Most = std::numeric_limits<int>::max();
    constexpr int Least = std::numeric_limits<int>::min();
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("start");
    QTest::newRow("no picture") << QSize(0, 0) << QPoint(0, 0);
    QTest::newRow("left") << QSize(3, 2) << QPoint(-1, 0);
    QTest::newRow("above") << QSize(3, 2) << QPoint(0, -1);
    QTest::newRow("right") << QSize(3, 2) << QPoint(3, 0);
    QTest::newRow("below") << QSize(3, 2) << QPoint(0, 2);
    QTest::newRow("far right") << QSize(3, 2) << QPoint(Most, 0);
    QTest::newRow("far left") << QSize(3, 2) << QPoint(Least, Least);
}

void TestYDFloodFillHelper::RefusesAStartOutside()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, start);
    RGBA32iImage image = TestPictures::Grey(size.width(), size.height(), 7);
    QRect changed(0, 0, 1, 1);
    QVERIFY(!YDFloodFillHelper::FloodFill(image, start, Same(0), Paint, &changed));
    QVERIFY(changed.isEmpty());
    QVERIFY(!YDFloodFillHelper::FloodFill(image, start, Same(0), Paint, nullptr));
    QVERIFY(TestPictures::AreEqual(image, TestPictures::Grey(size.width(), size.height(), 7)));
}

void TestYDFloodFillHelper::LeavesThePictureAloneWithoutMemory()
{
    const RGBA32iImage before = Comb(300, 300);
    int refused = 0;
    for (;; ++refused) {
        RGBA32iImage image = before.DeepCopy();
        QRect changed(0, 0, 1, 1);
        const Refusal refusal(refused);
        const bool isDone = YDFloodFillHelper::FloodFill(image, QPoint(0, 0), Same(0), Paint, &changed);
        if (!refusal.CameToPass()) {
            QVERIFY(isDone);
            break;
        }
        QVERIFY(!isDone);
        QVERIFY(changed.isEmpty());
        QVERIFY(TestPictures::AreEqual(image, before));
    }
    QVERIFY(refused > 0);
}

void TestYDFloodFillHelper::FillsAnyPictureAsPixelByPixel_data()
{
    QTest::addColumn<MakePicture>("makePicture");
    QTest::newRow("colours") << MakePicture(AnyColours);
    QTest::newRow("walls") << MakePicture(AnyWalls);
    QTest::newRow("rooms") << MakePicture(AnyRooms);
    QTest::newRow("texture") << MakePicture(AnyTexture);
}

void TestYDFloodFillHelper::FillsAnyPictureAsPixelByPixel()
{
    QFETCH(MakePicture, makePicture);
    QRandomGenerator random(7);
    for (int round = 0; round < 150; ++round) {
        const int width = AnySide(random);
        const int height = AnySide(random);
        const RGBA32iImage picture = makePicture(width, height, random);
        const int tolerance = random.bounded(2) == 0 ? random.bounded(256) : random.bounded(40);
        constexpr int Alphas[] = {0, 1, 2, 127, 128, 254, 255, 255};
        YDRGBA32i color(random.generate());
        color.a = quint8(Alphas[random.bounded(int(std::size(Alphas)))]);
        const Fill fill{QPoint(random.bounded(width), random.bounded(height)), Same(tolerance), color};
        const QString difference = Difference(picture, fill);
        QVERIFY2(
            difference.isEmpty(),
            qPrintable(
                QStringLiteral("round %1, %2x%3: %4").arg(round).arg(width).arg(height).arg(difference)));
    }
}

void TestYDFloodFillHelper::FillsFromEveryCorner()
{
    QRandomGenerator random(3);
    for (const QSize& size : {QSize(1, 1), QSize(1, 200), QSize(200, 1), QSize(131, 67)}) {
        const RGBA32iImage picture = AnyTexture(size.width(), size.height(), random);
        const QRect bounds(QPoint(0, 0), size);
        for (const QPoint& start :
             {bounds.topLeft(), bounds.topRight(), bounds.bottomLeft(), bounds.bottomRight()})
            QCOMPARE(Difference(picture, {start, Same(60), YDRGBA32i(9, 8, 7, 200)}), QString());
    }
}

void TestYDFloodFillHelper::FillsWindingPictures_data()
{
    QTest::addColumn<RGBA32iImage>("picture");
    QTest::addColumn<int>("tolerance");
    constexpr int Width = 1400;
    constexpr int Height = 900;
    QTest::newRow("comb") << Comb(Width, Height) << 0;
    QTest::newRow("spiral") << Spiral(Width, Height) << 0;
    QTest::newRow("checkerboard") << Walled(Width, Height, [](int x, int y) { return (x + y) % 2 == 1; })
                                  << 0;
    QTest::newRow("one colour") << TestPictures::Grey(Width, Height, 77) << 0;
    QTest::newRow("noise within the tolerance") << TestPictures::Noise(Width, Height) << 255;
    QTest::newRow("noise, some of it") << TestPictures::Noise(Width, Height) << 180;
}

void TestYDFloodFillHelper::FillsWindingPictures()
{
    QFETCH(RGBA32iImage, picture);
    QFETCH(int, tolerance);
    QCOMPARE(Difference(picture, {QPoint(0, 0), Same(tolerance), YDRGBA32i(90, 60, 30, 100)}), QString());
}

void TestYDFloodFillHelper::NeedsLittleStack()
{
    constexpr uint StackBytes = 256 * 1024;
    RGBA32iImage image = Spiral(1001, 1001);
    const RGBA32iImage expected = image.DeepCopy();
    FillPlainly(expected, {QPoint(0, 0), Same(0), Paint});
    bool isDone = false;
    const std::unique_ptr<QThread> thread(QThread::create(
        [&] { isDone = YDFloodFillHelper::FloodFill(image, QPoint(0, 0), Same(0), Paint, nullptr); }));
    thread->setStackSize(StackBytes);
    thread->start();
    thread->wait();
    QVERIFY(isDone);
    QVERIFY(TestPictures::AreEqual(image, expected));
}

void TestYDFloodFillHelper::TouchesNoMoreThanTheArea()
{
    // Memory that the system hands out when it is first touched: what nobody touched is not there.
    PixelBuffer::Trim();
    RGBA32iImage image = RGBA32iImage::Uninitialized(10000, 10000);
    QVERIFY(!image.IsEmpty());
    const QRect room(5000, 5000, 100, 100);
    for (int y = room.top(); y <= room.bottom(); ++y)
        std::fill_n(image.Row(y) + room.left(), room.width(), Ground);
    const auto presentBytes = [&image] {
        const auto page = std::size_t(::sysconf(_SC_PAGESIZE));
        const std::size_t bytes = std::size_t(image.BytesPerLine()) * std::size_t(image.Height());
        std::vector<unsigned char> pages((bytes + page - 1) / page);
        if (::mincore(image.Pixels(), bytes, pages.data()) != 0)
            return std::ptrdiff_t(-1);
        return std::count_if(pages.begin(), pages.end(), [](unsigned char flags) { return flags & 1; }) *
               std::ptrdiff_t(page);
    };
    QRect changed;
    QVERIFY(YDFloodFillHelper::FloodFill(image, room.center(), Same(0), Paint, &changed));
    QCOMPARE(changed, room);
    QVERIFY(presentBytes() > 0);
    QVERIFY(presentBytes() < 40 * 1000 * 1000); // of 400 MB
}

void TestYDFloodFillHelper::FillsInATaskOfAFullPool()
{
    // More fills than the pool has threads: each asks the pool for help that it may never get.
    constexpr int Fills = 8;
    std::vector<RGBA32iImage> images;
    for (int i = 0; i < Fills; ++i)
        images.push_back(Comb(900, 700));
    const RGBA32iImage expected = Comb(900, 700);
    FillPlainly(expected, {QPoint(0, 0), Same(0), Paint});
    QThreadPool::globalInstance()->setMaxThreadCount(2);
    std::atomic<int> next{0};
    std::atomic<int> done{0};
    RunPoolTasks(Fills, [&] {
        RGBA32iImage& image = images[std::size_t(next++)];
        done += YDFloodFillHelper::FloodFill(image, QPoint(0, 0), Same(0), Paint, nullptr);
    });
    QCOMPARE(done.load(), Fills);
    for (const RGBA32iImage& image : images)
        QVERIFY(TestPictures::AreEqual(image, expected));
}

QTEST_APPLESS_MAIN(TestYDFloodFillHelper)
#include "tst_YDFloodFillHelper.moc"
