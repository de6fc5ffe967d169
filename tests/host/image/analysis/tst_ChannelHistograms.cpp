#include "TestPictures.h"
#include "image/ChannelHistograms.h"
#include "image/KVRGBHistogram.h"
#include "image/Luma709.h"
#include "image/YDSharedImage.h"

#include <QTest>

#include <array>
#include <cstring>
#include <numeric>

Q_DECLARE_METATYPE(QImage::Format)

namespace {

using Table = ChannelHistograms::Table;

/// The counts of `area`, which lies inside the picture, pixel by pixel.
ChannelHistograms CountedPlainly(const RGBA32iImage& picture, const QRect& area)
{
    ChannelHistograms counts;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const YDRGBA32i pixel = picture.Row(y)[x];
            ++counts.red[pixel.r];
            ++counts.green[pixel.g];
            ++counts.blue[pixel.b];
            ++counts.luma[std::size_t(Luma709::Of(pixel))];
            ++counts.pixels;
        }
    return counts;
}

bool AreEqual(const ChannelHistograms& a, const ChannelHistograms& b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.luma == b.luma &&
           a.pixels == b.pixels;
}

QRect Whole(const RGBA32iImage& picture) { return {0, 0, picture.Width(), picture.Height()}; }

} // namespace

class TestChannelHistograms : public QObject
{
    Q_OBJECT

private slots:
    void LumaIsThatOfRec709();
    void LumaOfGreyIsItsLevel();
    void CountsWhatAPlainLoopCounts_data();
    void CountsWhatAPlainLoopCounts();
    void CountsPicturesOfEveryOddSize();
    void CountsManyBands();
    void CountsEqualPixelsInOneLevel();
    void NoPixelsAreCountedOfNothing();
    void CountsImagesOfAnyFormat_data();
    void CountsImagesOfAnyFormat();
    void CountsImagesOverForeignMemory_data();
    void CountsImagesOverForeignMemory();
    void AnAbortedCountGivesNothing();
    void TheFunctorCountsTheThreeChannels();
    void ASharedImageKeepsWhatItWasGiven();
};

void TestChannelHistograms::LumaIsThatOfRec709()
{
    QCOMPARE(Luma709::Of(qRgb(255, 0, 0)), 54);        // 0.2126 * 255 = 54.2
    QCOMPARE(Luma709::Of(qRgb(0, 255, 0)), 182);       // 0.7152 * 255 = 182.4
    QCOMPARE(Luma709::Of(qRgb(0, 0, 255)), 18);        // 0.0722 * 255 = 18.4
    QCOMPARE(Luma709::Of(qRgb(100, 50, 200)), 71);     // 21.26 + 35.76 + 14.44 = 71.46
    QCOMPARE(Luma709::Of(qRgba(10, 200, 30, 0)), 147); // 2.126 + 143.04 + 2.166 = 147.3; alpha takes no part
}

void TestChannelHistograms::LumaOfGreyIsItsLevel()
{
    for (int level = 0; level < 256; ++level)
        QCOMPARE(Luma709::Of(qRgb(level, level, level)), level);
}

void TestChannelHistograms::CountsWhatAPlainLoopCounts_data()
{
    QTest::addColumn<QRect>("area");
    QTest::newRow("everything") << QRect(0, 0, 200, 90);
    QTest::newRow("one pixel") << QRect(7, 9, 1, 1);
    QTest::newRow("one row") << QRect(0, 89, 200, 1);
    QTest::newRow("one column") << QRect(199, 0, 1, 90);
    QTest::newRow("inside") << QRect(3, 5, 151, 77);
}

void TestChannelHistograms::CountsWhatAPlainLoopCounts()
{
    QFETCH(QRect, area);
    const RGBA32iImage picture = TestPictures::Random(200, 90, 1);
    const auto counts = ChannelHistograms::Of(picture, area);
    QVERIFY(counts);
    QVERIFY(AreEqual(*counts, CountedPlainly(picture, area)));
}

/// The rows' padding is given a level that the pixels do not have.
void TestChannelHistograms::CountsPicturesOfEveryOddSize()
{
    for (int height = 1; height <= 5; height += 2)
        for (int width = 1; width <= 131; width += 2) {
            const RGBA32iImage picture(width, height);
            for (int y = 0; y < height; ++y) {
                std::fill_n(picture.Row(y), picture.RowLength(), YDRGBA32i(1, 2, 3, 4));
                std::fill_n(picture.Row(y), width, YDRGBA32i(10, 20, 30, 40));
            }
            const auto counts = ChannelHistograms::Of(picture, Whole(picture));
            QVERIFY(counts);
            QCOMPARE(counts->pixels, qint64(width) * height);
            QCOMPARE(counts->blue[10], qint64(width) * height);
            QCOMPARE(counts->green[20], qint64(width) * height);
            QCOMPARE(counts->red[30], qint64(width) * height);
            QCOMPARE(counts->luma[21], qint64(width) * height); // 6.378 + 14.304 + 0.722 = 21.4
        }
}

void TestChannelHistograms::CountsManyBands()
{
    const RGBA32iImage picture = TestPictures::Random(1501, 1003, 2);
    const auto counts = ChannelHistograms::Of(picture, Whole(picture));
    QVERIFY(counts);
    QVERIFY(AreEqual(*counts, CountedPlainly(picture, Whole(picture))));
    for (const Table* table : {&counts->red, &counts->green, &counts->blue, &counts->luma})
        QCOMPARE(std::accumulate(table->begin(), table->end(), qint64(0)), counts->pixels);
}

void TestChannelHistograms::CountsEqualPixelsInOneLevel()
{
    const RGBA32iImage picture = TestPictures::Grey(700, 500, 99);
    const auto counts = ChannelHistograms::Of(picture, Whole(picture));
    QVERIFY(counts);
    for (const Table* table : {&counts->red, &counts->green, &counts->blue, &counts->luma})
        QCOMPARE((*table)[99], qint64(350000));
}

void TestChannelHistograms::NoPixelsAreCountedOfNothing()
{
    const RGBA32iImage picture = TestPictures::Grey(10, 10, 99);
    const int far = std::numeric_limits<int>::max();
    for (const QRect& area :
         {QRect(), QRect(10, 0, 5, 5), QRect(0, -7, 10, 7), QRect(far - 5, far - 5, 5, 5)}) {
        const auto counts = ChannelHistograms::Of(picture, area);
        QVERIFY(counts);
        QVERIFY(AreEqual(*counts, ChannelHistograms()));
    }
    QVERIFY(AreEqual(*ChannelHistograms::Of(RGBA32iImage(), QRect(0, 0, 5, 5)), ChannelHistograms()));
    QVERIFY(AreEqual(*ChannelHistograms::Of(QImage()), ChannelHistograms()));
    QCOMPARE(ChannelHistograms::Of(picture, QRect(8, 8, 5, 5))->pixels, qint64(4));
}

void TestChannelHistograms::CountsImagesOfAnyFormat_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("RGB32") << QImage::Format_RGB32;
    QTest::newRow("ARGB32") << QImage::Format_ARGB32;
    QTest::newRow("ARGB32 premultiplied") << QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("RGB888") << QImage::Format_RGB888;
    QTest::newRow("RGBA8888") << QImage::Format_RGBA8888;
    QTest::newRow("RGBA64") << QImage::Format_RGBA64;
}

void TestChannelHistograms::CountsImagesOfAnyFormat()
{
    QFETCH(QImage::Format, format);
    const RGBA32iImage picture = TestPictures::Noise(67, 45); // opaque, so that every format holds it
    const QImage image = ImageToQImage(picture).convertToFormat(format);
    const auto counts = ChannelHistograms::Of(image);
    QVERIFY(counts);
    QVERIFY(AreEqual(*counts, CountedPlainly(picture, Whole(picture))));
}

void TestChannelHistograms::CountsImagesOverForeignMemory_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<int>("shift");        // of the first byte from an aligned address
    QTest::addColumn<int>("bytesPerLine"); // ten pixels need 40 of them
    QTest::newRow("whole pixels a line") << QImage::Format_ARGB32 << 0 << 44;
    QTest::newRow("no whole pixels a line") << QImage::Format_ARGB32 << 0 << 42;
    QTest::newRow("no whole pixels a line, no alpha") << QImage::Format_RGB32 << 0 << 42;
    QTest::newRow("no whole pixels a line, premultiplied") << QImage::Format_ARGB32_Premultiplied << 0 << 42;
    QTest::newRow("one byte off") << QImage::Format_ARGB32 << 1 << 40;
    QTest::newRow("two bytes off, no alpha") << QImage::Format_RGB32 << 2 << 40;
    QTest::newRow("three bytes off, odd lines") << QImage::Format_ARGB32 << 3 << 41;
}

/// The bytes between the lines have a level that the pixels do not have.
void TestChannelHistograms::CountsImagesOverForeignMemory()
{
    QFETCH(QImage::Format, format);
    QFETCH(int, shift);
    QFETCH(int, bytesPerLine);
    const RGBA32iImage picture = TestPictures::Noise(10, 7); // opaque, so that every format holds it
    alignas(quint32) std::array<uchar, 400> memory;
    memory.fill(1);
    for (int y = 0; y < 7; ++y)
        std::memcpy(memory.data() + shift + y * bytesPerLine, picture.Row(y), 10 * sizeof(YDRGBA32i));
    const QImage image(memory.data() + shift, 10, 7, bytesPerLine, format);
    QCOMPARE(image.bytesPerLine(), bytesPerLine);
    const auto counts = ChannelHistograms::Of(image);
    QVERIFY(counts);
    QVERIFY(AreEqual(*counts, CountedPlainly(picture, Whole(picture))));
}

void TestChannelHistograms::AnAbortedCountGivesNothing()
{
    const RGBA32iImage picture = TestPictures::Grey(10, 10, 99);
    const std::atomic<bool> abort{true};
    QVERIFY(!ChannelHistograms::Of(picture, Whole(picture), &abort));
    QVERIFY(!ChannelHistograms::Of(ImageToQImage(picture), &abort));
}

void TestChannelHistograms::TheFunctorCountsTheThreeChannels()
{
    quint32 red[256] = {};
    quint32 green[256] = {};
    quint32 blue[256] = {};
    const KVRGBHistogram count(red, green, blue);
    count(YDRGBA32i(1, 2, 3, 4));
    count(YDRGBA32i(1, 255, 0, 4));
    QCOMPARE(blue[1], 2u);
    QCOMPARE(green[2], 1u);
    QCOMPARE(green[255], 1u);
    QCOMPARE(red[3], 1u);
    QCOMPARE(red[0], 1u);
    for (const quint32* table : {red, green, blue})
        QCOMPARE(std::accumulate(table, table + 256, 0u), 2u);
}

void TestChannelHistograms::ASharedImageKeepsWhatItWasGiven()
{
    YDSharedImage<RGBA32iImage> holder;
    QVERIFY(holder.GetImage().IsEmpty());
    const RGBA32iImage picture = TestPictures::Grey(3, 2, 7);
    holder.SetImage(picture);
    QVERIFY(holder.GetImage().SharesPixelsWith(picture));
    QVERIFY(YDSharedImage<RGBA32iImage>(picture).GetImage().SharesPixelsWith(picture));
    QCOMPARE(YDSharedImage<QImage>(QImage(3, 2, QImage::Format_RGB32)).GetImage().width(), 3);
}

QTEST_GUILESS_MAIN(TestChannelHistograms)
#include "tst_ChannelHistograms.moc"
