#include "image/KVImage.h"

#include <QColor>
#include <QTest>

class TestKVImage : public QObject
{
    Q_OBJECT

private slots:
    void IsEmptyWithoutASide_data();
    void IsEmptyWithoutASide();
    void RowsAreWholeTilesAndAligned_data();
    void RowsAreWholeTilesAndAligned();
    void IsZeroedAlsoInRecycledMemory();
    void CopiesShareTheirPixels();
    void DeepCopiesDoNot();
    void TakesEveryFormatOfQImage_data();
    void TakesEveryFormatOfQImage();
    void ShowsItsPixelsWithoutACopy();
    void TheViewKeepsThePixelsAlive();
    void AHandleKeepsThePixelsAlive();
    void AHandleKnowsItsBytes_data();
    void AHandleKnowsItsBytes();
};

void TestKVImage::IsEmptyWithoutASide_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("0 x 0") << 0 << 0;
    QTest::newRow("0 wide") << 0 << 7;
    QTest::newRow("0 high") << 7 << 0;
    QTest::newRow("negative width") << -1 << 7;
    QTest::newRow("negative height") << 7 << -1;
    QTest::newRow("wider than whole tiles can be counted") << std::numeric_limits<int>::max() << 1;
}

void TestKVImage::IsEmptyWithoutASide()
{
    QFETCH(int, width);
    QFETCH(int, height);
    const RGBA32iImage image(width, height);
    QVERIFY(image.IsEmpty());
    QCOMPARE(image.Width(), 0);
    QCOMPARE(image.Height(), 0);
    QCOMPARE(image.RowLength(), 0);
    QVERIFY(!image.Pixels());
    QVERIFY(image.DeepCopy().IsEmpty());
    QVERIFY(ImageToQImage(image).isNull());
}

void TestKVImage::RowsAreWholeTilesAndAligned_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("rowLength");
    QTest::newRow("one pixel") << 1 << 128;
    QTest::newRow("one less than a tile") << 127 << 128;
    QTest::newRow("a tile") << 128 << 128;
    QTest::newRow("one more than a tile") << 129 << 256;
    QTest::newRow("a photograph") << 6000 << 6016;
}

void TestKVImage::RowsAreWholeTilesAndAligned()
{
    QFETCH(int, width);
    QFETCH(int, rowLength);
    const RGBA32iImage image(width, 3);
    QCOMPARE(image.RowLength(), rowLength);
    for (int y = 0; y < 3; ++y) {
        QCOMPARE(reinterpret_cast<quintptr>(image.Row(y)) % 64, quintptr(0));
        QCOMPARE(image.Row(y) - image.Pixels(), qsizetype(y) * rowLength);
    }
}

void TestKVImage::IsZeroedAlsoInRecycledMemory()
{
    for (int round = 0; round < 2; ++round) {
        const RGBA32iImage image(1500, 1000);
        for (int y = 0; y < image.Height(); ++y)
            for (int x = 0; x < image.RowLength(); ++x)
                QVERIFY(image.Row(y)[x] == YDRGBA32i());
        std::fill_n(image.Pixels(), qsizetype(image.RowLength()) * image.Height(), YDRGBA32i(1, 2, 3, 4));
    }
    QVERIFY(PixelBuffer::RecyclableBytes() > 0);
    PixelBuffer::Trim();
    QCOMPARE(PixelBuffer::RecyclableBytes(), qsizetype(0));
}

void TestKVImage::CopiesShareTheirPixels()
{
    const RGBA32iImage image(10, 10);
    const RGBA32iImage copy = image;
    image.Row(3)[4] = YDRGBA32i(1, 2, 3, 4);
    QVERIFY(copy.Row(3)[4] == YDRGBA32i(1, 2, 3, 4));
    QVERIFY(copy.SharesPixelsWith(image));
}

void TestKVImage::DeepCopiesDoNot()
{
    const RGBA32iImage image(300, 200);
    image.Row(199)[299] = YDRGBA32i(1, 2, 3, 4);
    const RGBA32iImage copy = image.DeepCopy();
    QVERIFY(!copy.SharesPixelsWith(image));
    QVERIFY(copy.Row(199)[299] == YDRGBA32i(1, 2, 3, 4));
    image.Row(199)[299] = YDRGBA32i();
    QVERIFY(copy.Row(199)[299] == YDRGBA32i(1, 2, 3, 4));
}

void TestKVImage::TakesEveryFormatOfQImage_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("expected");
    const QColor tone(40, 80, 200);
    QTest::newRow("RGB32") << int(QImage::Format_RGB32) << tone << tone;
    QTest::newRow("ARGB32") << int(QImage::Format_ARGB32) << QColor(40, 80, 200, 7) << QColor(40, 80, 200, 7);
    QTest::newRow("premultiplied") << int(QImage::Format_ARGB32_Premultiplied) << QColor(255, 0, 255, 51)
                                   << QColor(255, 0, 255, 51);
    QTest::newRow("RGB888") << int(QImage::Format_RGB888) << tone << tone;
    QTest::newRow("RGBA8888") << int(QImage::Format_RGBA8888) << tone << tone;
    QTest::newRow("RGBA64") << int(QImage::Format_RGBA64) << tone << tone;
    QTest::newRow("grey") << int(QImage::Format_Grayscale8) << QColor(90, 90, 90) << QColor(90, 90, 90);
}

void TestKVImage::TakesEveryFormatOfQImage()
{
    QFETCH(int, format);
    QFETCH(QColor, color);
    QFETCH(QColor, expected);
    QImage source(130, 3, static_cast<QImage::Format>(format));
    source.fill(color);
    const RGBA32iImage image = ImageFromQImage(source);
    QCOMPARE(image.Width(), 130);
    QCOMPARE(image.Height(), 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 130; ++x)
            QCOMPARE(QRgb(image.Row(y)[x]), expected.rgba());
}

void TestKVImage::ShowsItsPixelsWithoutACopy()
{
    const RGBA32iImage image(130, 3);
    const QImage view = ImageToQImage(image);
    QCOMPARE(view.format(), QImage::Format_ARGB32);
    QCOMPARE(view.size(), QSize(130, 3));
    QCOMPARE(view.bytesPerLine(), int(image.BytesPerLine()));
    QCOMPARE(static_cast<const void*>(view.constBits()), static_cast<const void*>(image.Pixels()));
    image.Row(2)[129] = YDRGBA32i(qRgba(1, 2, 3, 255));
    QCOMPARE(view.pixel(129, 2), qRgba(1, 2, 3, 255));
}

void TestKVImage::TheViewKeepsThePixelsAlive()
{
    QImage view;
    {
        const RGBA32iImage image(5, 5);
        image.Row(4)[4] = YDRGBA32i(qRgba(9, 8, 7, 6));
        view = ImageToQImage(image);
    }
    QCOMPARE(view.pixel(4, 4), qRgba(9, 8, 7, 6));
}

void TestKVImage::AHandleKeepsThePixelsAlive()
{
    std::shared_ptr<const unsigned char> handle;
    {
        const RGBA32iImage image(3, 2);
        image.Row(1)[2] = YDRGBA32i(10, 20, 30, 40);
        handle = image.SharedPixels();
        QCOMPARE(static_cast<const void*>(handle.get()), static_cast<const void*>(image.Pixels()));
    }
    QCOMPARE(handle.use_count(), 1L);
    const unsigned char* const pixel = handle.get() + (128 + 2) * 4;
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(pixel), 4), QByteArray("\x0a\x14\x1e\x28"));
    QVERIFY(!RGBA32iImage().SharedPixels());
}

void TestKVImage::AHandleKnowsItsBytes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << QSize(100, 3);
    QTest::newRow("large") << QSize(4096, 512); // 8 MiB, whole pages even where these are huge
}

void TestKVImage::AHandleKnowsItsBytes()
{
    QFETCH(QSize, size);
    const RGBA32iImage image(size.width(), size.height());
    const std::shared_ptr<const unsigned char> handle = image.SharedPixels();
    const qint64 bytes = image.BytesPerLine() * image.Height();
    QVERIFY(PixelBuffer::HasBytes(handle, 0));
    QVERIFY(PixelBuffer::HasBytes(handle, bytes));
    QVERIFY(!PixelBuffer::HasBytes(handle, bytes + 1));
    QVERIFY(!PixelBuffer::HasBytes(handle, -1));
    QVERIFY(PixelBuffer::HasBytes({handle, handle.get() + 8}, bytes - 8));
    QVERIFY(!PixelBuffer::HasBytes({handle, handle.get() + 8}, bytes));
    static const unsigned char foreign = 0;
    QVERIFY(PixelBuffer::HasBytes({std::shared_ptr<void>(), &foreign}, 1 << 20));
    QVERIFY(PixelBuffer::HasBytes(nullptr, 1));
}

QTEST_APPLESS_MAIN(TestKVImage)
#include "tst_KVImage.moc"
