#include "gui/ReducedPicture.h"

#include <QTest>

#include <random>

namespace {

RGBA32iImage RandomPicture(int width, int height, bool opaque)
{
    std::mt19937 random(static_cast<unsigned>(width * 31 + height));
    RGBA32iImage picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.Row(y)[x] = YDRGBA32i(QRgb(random()) | (opaque ? 0xff000000u : 0u));
    return picture;
}

/// The definition, in floating point.
YDRGBA32i AverageOf(const RGBA32iImage& picture, int left, int top, int side)
{
    double sum[4] = {};
    int pixels = 0;
    for (int y = top; y < std::min(top + side, picture.Height()); ++y)
        for (int x = left; x < std::min(left + side, picture.Width()); ++x, ++pixels) {
            const YDRGBA32i pixel = picture.Row(y)[x];
            sum[0] += pixel.b * pixel.a / 255.0;
            sum[1] += pixel.g * pixel.a / 255.0;
            sum[2] += pixel.r * pixel.a / 255.0;
            sum[3] += pixel.a;
        }
    const auto rounded = [pixels](double value) { return static_cast<quint8>(value / pixels + 0.5 + 1e-9); };
    return {rounded(sum[0]), rounded(sum[1]), rounded(sum[2]), rounded(sum[3])};
}

} // namespace

class TestReducedPicture : public QObject
{
    Q_OBJECT

private slots:
    void AveragesASmallPicture();
    void WeighsColoursWithTheirAlpha();
    void RoundsHalvesUp();
    void EqualsTheDefinition_data();
    void EqualsTheDefinition();
    void ColoursNeverExceedAlpha();
    void KnowsWhetherItIsOpaque();
    void ReducesFlatPictures_data();
    void ReducesFlatPictures();
    void IsEmptyWithoutAPictureOrWhenAborted();
    void FactorSuitsTheZoom_data();
    void FactorSuitsTheZoom();
};

void TestReducedPicture::AveragesASmallPicture()
{
    // Blocks of 2 x 2, 1 x 2 at the right, 2 x 1 below and a single pixel in the corner.
    RGBA32iImage picture(3, 3);
    const int grey[3][3] = {{0, 10, 100}, {20, 30, 50}, {200, 100, 7}};
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x)
            picture.Row(y)[x] = qRgb(grey[y][x], 255, 255 - grey[y][x]);
    const ReducedPicture reduced = ReducedPicture::Reduce(picture, 2, nullptr);
    QCOMPARE(reduced.factor, 2);
    QVERIFY(reduced.isOpaque);
    QCOMPARE(reduced.pixels.Width(), 2);
    QCOMPARE(reduced.pixels.Height(), 2);
    QCOMPARE(QRgb(reduced.pixels.Row(0)[0]), qRgb(15, 255, 240));
    QCOMPARE(QRgb(reduced.pixels.Row(0)[1]), qRgb(75, 255, 180));
    QCOMPARE(QRgb(reduced.pixels.Row(1)[0]), qRgb(150, 255, 105));
    QCOMPARE(QRgb(reduced.pixels.Row(1)[1]), qRgb(7, 255, 248));
}

void TestReducedPicture::WeighsColoursWithTheirAlpha()
{
    RGBA32iImage picture(2, 2);
    picture.Row(0)[0] = qRgba(200, 100, 0, 255);
    picture.Row(0)[1] = qRgba(0, 255, 255, 0); // its colour is nobody's business
    picture.Row(1)[0] = qRgba(255, 255, 255, 0);
    picture.Row(1)[1] = qRgba(100, 0, 200, 51); // a fifth
    const ReducedPicture reduced = ReducedPicture::Reduce(picture, 2, nullptr);
    // (200 + 20) / 4, (100 + 0) / 4, (0 + 40) / 4, (255 + 51) / 4 = 76.5
    QCOMPARE(QRgb(reduced.pixels.Row(0)[0]), qRgba(55, 25, 10, 77));
    QVERIFY(!reduced.isOpaque);
}

void TestReducedPicture::RoundsHalvesUp()
{
    RGBA32iImage picture(2, 2);
    for (int i = 0; i < 4; ++i)
        picture.Row(i / 2)[i % 2] = qRgb(i < 2 ? 1 : 0, i < 1 ? 1 : 0, i < 3 ? 1 : 0); // 0.5, 0.25, 0.75
    QCOMPARE(QRgb(ReducedPicture::Reduce(picture, 2, nullptr).pixels.Row(0)[0]), qRgb(1, 0, 1));
}

void TestReducedPicture::EqualsTheDefinition_data()
{
    QTest::addColumn<int>("factor");
    QTest::addColumn<bool>("opaque");
    for (int factor = 1; factor <= ReducedPicture::LargestFactor; factor *= 2)
        for (const bool opaque : {false, true})
            QTest::addRow("1/%d %s", factor, opaque ? "opaque" : "with alpha") << factor << opaque;
}

void TestReducedPicture::EqualsTheDefinition()
{
    QFETCH(int, factor);
    QFETCH(bool, opaque);
    const RGBA32iImage picture = RandomPicture(309, 157, opaque);
    const ReducedPicture reduced = ReducedPicture::Reduce(picture, factor, nullptr);
    QCOMPARE(reduced.isOpaque, opaque);
    QCOMPARE(reduced.pixels.Width(), (309 + factor - 1) / factor);
    QCOMPARE(reduced.pixels.Height(), (157 + factor - 1) / factor);
    for (int y = 0; y < reduced.pixels.Height(); ++y)
        for (int x = 0; x < reduced.pixels.Width(); ++x)
            QCOMPARE(QRgb(reduced.pixels.Row(y)[x]),
                     QRgb(AverageOf(picture, x * factor, y * factor, factor)));
}

void TestReducedPicture::ColoursNeverExceedAlpha()
{
    RGBA32iImage picture = RandomPicture(256, 256, false);
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x)
            picture.Row(y)[x] = qRgba(255, 255, y, (x * 7 + y) & 255);
    const ReducedPicture reduced = ReducedPicture::Reduce(picture, 4, nullptr);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            const YDRGBA32i pixel = reduced.pixels.Row(y)[x];
            QVERIFY(pixel.r <= pixel.a && pixel.g <= pixel.a && pixel.b <= pixel.a);
        }
}

void TestReducedPicture::KnowsWhetherItIsOpaque()
{
    for (const int factor : {1, 2, 64}) {
        const RGBA32iImage picture = RandomPicture(200, 100, true);
        QVERIFY(ReducedPicture::Reduce(picture, factor, nullptr).isOpaque);
        picture.Row(99)[199].a = 254;
        QVERIFY(!ReducedPicture::Reduce(picture, factor, nullptr).isOpaque);
    }
}

void TestReducedPicture::ReducesFlatPictures_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("1 x 1") << QSize(1, 1) << QSize(1, 1);
    QTest::newRow("1 x N") << QSize(1, 1001) << QSize(1, 126);
    QTest::newRow("N x 1") << QSize(1001, 1) << QSize(126, 1);
    QTest::newRow("whole blocks") << QSize(16, 8) << QSize(2, 1);
}

void TestReducedPicture::ReducesFlatPictures()
{
    QFETCH(QSize, size);
    QFETCH(QSize, expected);
    RGBA32iImage picture(size.width(), size.height());
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.Row(y)[x] = qRgb(3, 200, 91);
    const ReducedPicture reduced = ReducedPicture::Reduce(picture, 8, nullptr);
    QCOMPARE(QSize(reduced.pixels.Width(), reduced.pixels.Height()), expected);
    for (int y = 0; y < expected.height(); ++y)
        for (int x = 0; x < expected.width(); ++x)
            QCOMPARE(QRgb(reduced.pixels.Row(y)[x]), qRgb(3, 200, 91));
}

void TestReducedPicture::IsEmptyWithoutAPictureOrWhenAborted()
{
    QVERIFY(ReducedPicture::Reduce({}, 2, nullptr).pixels.IsEmpty());
    const std::atomic<bool> abort{true};
    QVERIFY(ReducedPicture::Reduce(RandomPicture(50, 50, true), 2, &abort).pixels.IsEmpty());
}

void TestReducedPicture::FactorSuitsTheZoom_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<int>("expected");
    QTest::newRow("enlarged") << 64.0 << 1;
    QTest::newRow("half") << 0.5 << 1;
    QTest::newRow("below half") << 0.4999 << 2;
    QTest::newRow("a quarter") << 0.25 << 2;
    QTest::newRow("a tenth") << 0.1 << 8;
    QTest::newRow("a hundredth") << 0.01 << 64;
    QTest::newRow("below the range") << 0.0 << 128;
}

void TestReducedPicture::FactorSuitsTheZoom()
{
    QFETCH(double, zoom);
    QFETCH(int, expected);
    QCOMPARE(ReducedPicture::FactorForZoom(zoom), expected);
}

QTEST_APPLESS_MAIN(TestReducedPicture)
#include "tst_ReducedPicture.moc"
