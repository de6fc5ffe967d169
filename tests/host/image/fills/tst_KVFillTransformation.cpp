#include "KernelCheck.h"
#include "SourceOver.h"
#include "image/KVFillTransformation.h"

#include <QTest>

namespace {

KVFillTransformation Fill(const YDRGBA32i& pixel)
{
    KVFillTransformation fill;
    fill.SetData(pixel);
    return fill;
}

YDRGBA32i Filled(const YDRGBA32i& fill, YDRGBA32i pixel)
{
    Fill(fill)(pixel);
    return pixel;
}

} // namespace

class TestKVFillTransformation : public QObject
{
    Q_OBJECT

private slots:
    void ChangesNothingByDefault();
    void LaysTheColourOverAPixel_data();
    void LaysTheColourOverAPixel();
    void AnOpaqueColourReplacesEveryPixel();
    void ATransparentColourChangesNothing();
    void IsSourceOverForEveryPairOfAlphas();
    void BlocksOfBytesAreEightPixels();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
    void RowsOfMixedAlphasEqualPixels_data();
    void RowsOfMixedAlphasEqualPixels();
};

void TestKVFillTransformation::ChangesNothingByDefault()
{
    const KVFillTransformation fill;
    for (const YDRGBA32i& before : KernelCheck::ColourCube()) {
        YDRGBA32i pixel = before;
        fill(pixel);
        QCOMPARE(QRgb(pixel), QRgb(before));
    }
    KernelCheck::Row row = KernelCheck::ColourCube();
    fill.ProcessRow(row.data(), int(row.size()));
    QVERIFY(row == KernelCheck::ColourCube());
}

void TestKVFillTransformation::LaysTheColourOverAPixel_data()
{
    QTest::addColumn<QRgb>("fill");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    QTest::newRow("opaque") << qRgba(1, 2, 3, 255) << qRgba(200, 100, 50, 255) << qRgba(1, 2, 3, 255);
    // 127 / 255 = 0.498: 100 + (200 - 100) * 0.498 = 149.8, 100 - 100 * 0.498 = 50.2, 100.
    QTest::newRow("half") << qRgba(200, 0, 100, 127) << qRgba(100, 100, 100, 255) << qRgba(150, 50, 100, 255);
    // 51 / 255 = 0.2: 10 + 240 * 0.2 = 58; 20 - 20 * 0.2 = 16; 30.
    QTest::newRow("a fifth") << qRgba(250, 0, 30, 51) << qRgba(10, 20, 30, 255) << qRgba(58, 16, 30, 255);
    // 0.2 of the fill over 0.8 * 0.4 = 0.32 of the pixel are 0.52, 132.6; (250 * 0.2 + 10 * 0.32) / 0.52 =
    // 102.3; 20 * 0.32 / 0.52 = 12.3; 30.
    QTest::newRow("over a translucent pixel")
        << qRgba(250, 0, 30, 51) << qRgba(10, 20, 30, 102) << qRgba(102, 12, 30, 133);
    QTest::newRow("over nothing") << qRgba(9, 8, 7, 6) << qRgba(200, 100, 50, 0) << qRgba(9, 8, 7, 6);
    QTest::newRow("opaque over nothing") << qRgba(9, 8, 7, 255) << qRgba(2, 1, 5, 0) << qRgba(9, 8, 7, 255);
}

void TestKVFillTransformation::LaysTheColourOverAPixel()
{
    QFETCH(QRgb, fill);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QCOMPARE(QRgb(Filled(fill, before)), after);
    KernelCheck::Row row(19, YDRGBA32i(before));
    Fill(fill).ProcessRow(row.data(), int(row.size()));
    QVERIFY(row == KernelCheck::Row(19, YDRGBA32i(after)));
}

void TestKVFillTransformation::AnOpaqueColourReplacesEveryPixel()
{
    const YDRGBA32i fill(12, 34, 56, 255);
    std::minstd_rand random(1);
    for (const YDRGBA32i& pixel : KernelCheck::RandomRow(10000, random))
        QCOMPARE(QRgb(Filled(fill, pixel)), QRgb(fill));
}

void TestKVFillTransformation::ATransparentColourChangesNothing()
{
    std::minstd_rand random(2);
    const KernelCheck::Row pixels = KernelCheck::RandomRow(10000, random);
    for (const YDRGBA32i& pixel : pixels)
        QCOMPARE(QRgb(Filled({12, 34, 56, 0}, pixel)), QRgb(pixel));
    KernelCheck::Row row = pixels;
    Fill({12, 34, 56, 0}).ProcessRow(row.data(), int(row.size()));
    QVERIFY(row == pixels);
}

void TestKVFillTransformation::IsSourceOverForEveryPairOfAlphas()
{
    for (int above = 0; above < 256; ++above)
        for (int below = 0; below < 256; ++below)
            for (const int level : {0, 1, 100, 254, 255}) {
                const YDRGBA32i fill{255, 77, quint8(255 - level), quint8(above)};
                const YDRGBA32i pixel{quint8(level), quint8(level), 3, quint8(below)};
                QCOMPARE(QRgb(Filled(fill, pixel)), QRgb(LaidOver(fill, pixel)));
            }
}

void TestKVFillTransformation::BlocksOfBytesAreEightPixels()
{
    std::minstd_rand random(3);
    const KernelCheck::Row source = KernelCheck::RandomRow(20, random);
    const KVFillTransformation fill = Fill({200, 30, 90, 100});
    for (int offset = 0; offset < 8; ++offset) {
        KernelCheck::Row blocks = source;
        KernelCheck::Row expected = source;
        auto* const bytes = reinterpret_cast<unsigned char*>(blocks.data() + offset);
        fill(bytes, reinterpret_cast<quintptr>(bytes) % 32 == 0);
        for (int x = offset; x < offset + 8; ++x)
            fill(expected[std::size_t(x)]);
        QVERIFY(blocks == expected);
    }
}

void TestKVFillTransformation::RowsEqualPixels_data()
{
    QTest::addColumn<QRgb>("fill");
    for (const int alpha : {0, 1, 2, 51, 127, 128, 200, 254, 255})
        QTest::addRow("alpha %d", alpha) << qRgba(255, 0, 93, alpha);
}

void TestKVFillTransformation::RowsEqualPixels()
{
    QFETCH(QRgb, fill);
    QCOMPARE(KernelCheck::Difference(VectorKernels::FillRow, Fill(fill)), QString());
}

void TestKVFillTransformation::RowsOfMixedAlphasEqualPixels_data()
{
    QTest::addColumn<qint64>("target");
    QTest::newRow("all") << qint64(0);
    for (const qint64 target : KernelCheck::Targets())
        QTest::newRow(qPrintable(KernelCheck::NameOf(target))) << target;
}

void TestKVFillTransformation::RowsOfMixedAlphasEqualPixels()
{
    QFETCH(qint64, target);
    const KernelCheck::Restriction restriction(target);
    constexpr int Count = 4096;
    std::minstd_rand random(4);
    for (int alpha = 0; alpha < 256; ++alpha) {
        const KVFillTransformation fill = Fill({255, 128, quint8(alpha), quint8(alpha)});
        KernelCheck::Row row = KernelCheck::RandomRow(Count, random);
        for (YDRGBA32i& pixel : row) // whole vectors of opaque pixels, as photographs are
            if (random() % 32 != 0)
                pixel.a = 255;
        QCOMPARE(KernelCheck::RowDifference(fill, row, 0, Count), QString());
    }
}

QTEST_GUILESS_MAIN(TestKVFillTransformation)
#include "tst_KVFillTransformation.moc"
