#include "KernelCheck.h"
#include "TestPictures.h"
#include "image/PixelSquare.h"

#include <QTest>

#include <cstdlib>

namespace {

/// Those that the kernels may use, or the plain forms where there are none.
std::vector<qint64> TargetsOrPlain()
{
    const std::vector<qint64> targets = KernelCheck::Targets();
    return targets.empty() ? std::vector<qint64>{0} : targets;
}

bool IsNear(int a, int b, int tolerance) { return std::abs(a - b) <= tolerance; }

/// Colours around `color` of which about half are within the tolerance of each channel.
RGBA32iImage ColoursAround(const YDRGBA32i& color, int tolerance, const QSize& size)
{
    QRandomGenerator random(5);
    const RGBA32iImage image = TestPictures::Random(size.width(), size.height(), 4);
    const auto moved = [&](int channel) {
        return quint8(std::clamp(channel + random.bounded(-tolerance - 1, tolerance + 2), 0, 255));
    };
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            if (random.bounded(8) != 0)
                image.Row(y)[x] = {moved(color.b), moved(color.g), moved(color.r), image.Row(y)[x].a};
    return image;
}

/// The corners of all squares of a picture.
QVector<QPoint> Corners(const RGBA32iImage& image)
{
    QVector<QPoint> corners;
    for (int y = 0; y < image.Height(); y += BitSquare::Side)
        for (int x = 0; x < image.Width(); x += BitSquare::Side)
            corners.append({x, y});
    return corners;
}

BitSquare AnyBits(QRandomGenerator& random, const QRect& area)
{
    BitSquare bits;
    for (int y = 0; y < area.height(); ++y) {
        const quint64 columns =
            area.width() == BitSquare::Side ? ~quint64(0) : (quint64(1) << area.width()) - 1;
        const quint64 any = random.bounded(4) == 0 ? ~quint64(0) : random.generate64();
        bits.rows[std::size_t(y)] = random.bounded(5) == 0 ? 0 : any & columns;
    }
    return bits;
}

const QVector<QSize>& Sizes()
{
    static const QVector<QSize> sizes{{1, 1},   {1, 64},  {64, 1},   {63, 63},  {64, 64},
                                      {65, 65}, {127, 3}, {128, 70}, {129, 65}, {200, 130}};
    return sizes;
}

} // namespace

class TestPixelSquare : public QObject
{
    Q_OBJECT

private slots:
    void CoversThePictureInSquares();
    void UsesTheKernels();
    void MatchesPixelByPixel_data();
    void MatchesPixelByPixel();
    void FillsPixelByPixel_data();
    void FillsPixelByPixel();
};

void TestPixelSquare::CoversThePictureInSquares()
{
    const RGBA32iImage image(130, 70);
    QCOMPARE(PixelSquare(image, QPoint(0, 0)).Area(), QRect(0, 0, 64, 64));
    QCOMPARE(PixelSquare(image, QPoint(128, 0)).Area(), QRect(128, 0, 2, 64));
    QCOMPARE(PixelSquare(image, QPoint(64, 64)).Area(), QRect(64, 64, 64, 6));
}

void TestPixelSquare::UsesTheKernels()
{
    const bool hasModule = AVX2LIB::Instance();
    QCOMPARE(AVX2LIB::Find(VectorKernels::MatchSquare) != nullptr, hasModule);
    QCOMPARE(AVX2LIB::Find(VectorKernels::FillSquare) != nullptr, hasModule);
}

void TestPixelSquare::MatchesPixelByPixel_data()
{
    QTest::addColumn<QRgb>("color");
    QTest::addColumn<int>("tolerance");
    QTest::newRow("this colour alone") << 0xff406080u << 0;
    QTest::newRow("near") << 0xff406080u << 9;
    QTest::newRow("far") << 0xff406080u << 100;
    QTest::newRow("black") << 0xff000000u << 20;
    QTest::newRow("white") << 0xffffffffu << 20;
    QTest::newRow("past both ends") << 0xff807f01u << 200;
    QTest::newRow("all colours") << 0xff123456u << 255;
}

void TestPixelSquare::MatchesPixelByPixel()
{
    QFETCH(QRgb, color);
    QFETCH(int, tolerance);
    const YDRGBA32i wanted(color);
    const auto level = quint8(tolerance);
    const ColorRange range = ColorRange::Around(wanted, {level, level, level, 0});
    for (const qint64 target : TargetsOrPlain()) {
        const KernelCheck::Restriction restriction(target);
        for (const QSize& size : Sizes()) {
            const RGBA32iImage image = ColoursAround(wanted, tolerance, size);
            for (const QPoint& corner : Corners(image)) {
                const PixelSquare square(image, corner);
                BitSquare expected;
                for (int y = square.Area().top(); y <= square.Area().bottom(); ++y)
                    for (int x = square.Area().left(); x <= square.Area().right(); ++x) {
                        const YDRGBA32i pixel = image.Row(y)[x];
                        const bool isNear = IsNear(pixel.b, wanted.b, tolerance) &&
                                            IsNear(pixel.g, wanted.g, tolerance) &&
                                            IsNear(pixel.r, wanted.r, tolerance);
                        expected.rows[std::size_t(y - corner.y())] |= quint64(isNear) << (x - corner.x());
                    }
                QVERIFY2(square.Match(range, nullptr).rows == expected.rows,
                         qPrintable(KernelCheck::NameOf(target)));
                QVERIFY(square.Match(range, &square).rows == expected.rows);
            }
        }
    }
}

void TestPixelSquare::FillsPixelByPixel_data()
{
    QTest::addColumn<QRgb>("fill");
    QTest::newRow("opaque") << 0xff804020u;
    QTest::newRow("nearly opaque") << 0xfe804020u;
    QTest::newRow("half") << 0x7f804020u;
    QTest::newRow("faint") << 0x01ffffffu;
    QTest::newRow("transparent") << 0x00ff00ffu;
}

void TestPixelSquare::FillsPixelByPixel()
{
    QFETCH(QRgb, fill);
    const FillRule rule{YDRGBA32i(fill)};
    QRandomGenerator random(6);
    for (const qint64 target : TargetsOrPlain()) {
        const KernelCheck::Restriction restriction(target);
        for (const QSize& size : Sizes()) {
            for (const bool isOpaque : {true, false}) {
                const RGBA32iImage image = isOpaque ? TestPictures::Noise(size.width(), size.height())
                                                    : TestPictures::Random(size.width(), size.height(), 8);
                const RGBA32iImage expected = image.DeepCopy();
                for (const QPoint& corner : Corners(image)) {
                    const PixelSquare square(image, corner);
                    const BitSquare bits = AnyBits(random, square.Area());
                    square.Fill(rule, bits);
                    for (int y = 0; y < square.Area().height(); ++y)
                        for (int x = 0; x < square.Area().width(); ++x)
                            if (bits.rows[std::size_t(y)] >> x & 1)
                                rule(expected.Row(corner.y() + y)[corner.x() + x]);
                }
                QVERIFY2(TestPictures::AreEqual(image, expected), qPrintable(KernelCheck::NameOf(target)));
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestPixelSquare)
#include "tst_PixelSquare.moc"
