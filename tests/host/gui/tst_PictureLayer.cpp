#include "gui/PictureLayer.h"

#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <memory>

namespace {

RGBA32iImage Plain(int width, int height, QRgb color)
{
    RGBA32iImage picture(width, height);
    for (int y = 0; y < height; ++y)
        std::fill_n(picture.Row(y), width, YDRGBA32i(color));
    return picture;
}

constexpr QRgb Nothing = 0xff123456;

/// What the layer draws into an area of 100 x 100, the picture at its corner.
QImage Drawn(const PictureLayer& layer, double scale)
{
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Nothing);
    QPainter painter(&image);
    layer.Draw(painter, {QPointF(0, 0), scale}, image.rect(), false);
    return image;
}

constexpr QRgb Red = 0xffff0000;
constexpr QRgb Green = 0xff00ff00;
constexpr QRgb Blue = 0xff0000ff;

} // namespace

class TestPictureLayer : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void DrawsItsOwnPixelsFromHalfSizeOn();
    void ShowsSomethingAtOnceAndThenTheAverage();
    void ShowsTheOldCopyUntilTheNewOneIsThere();
    void EndsWithTheNewestPicture();
    void ForgetsTheCopyOfAPictureOfAnotherSize();
    void DrawsTheNewPictureWhenZoomedOutLater();
    void TakesOverTheCopyToo();
    void MakesTheCopyThatTheZoomNeeds();
    void ShowsACheckerboardThroughTransparentPixels();
    void DrawsPicturesWiderThanTextures();
    void IsDestroyedWhileACopyIsMade();
    void DrawsNothingWithoutAPicture();
};

void TestPictureLayer::DrawsItsOwnPixelsFromHalfSizeOn()
{
    RGBA32iImage picture = Plain(4, 4, Red);
    picture.Row(1)[2] = Blue;
    PictureLayer layer;
    const QSignalSpy changes(&layer, &PictureLayer::Changed);
    layer.SetPicture(picture, 10);
    QCOMPARE(changes.count(), 1);
    const QImage image = Drawn(layer, 10);
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 100; ++x) {
            const bool isBlue = x >= 20 && x < 30 && y >= 10 && y < 20;
            QCOMPARE(image.pixel(x, y), x >= 40 || y >= 40 ? Nothing : isBlue ? Blue : Red);
        }
    QVERIFY(layer.Copy().pixels.IsEmpty());
}

void TestPictureLayer::ShowsSomethingAtOnceAndThenTheAverage()
{
    RGBA32iImage picture(800, 800); // black and white columns
    for (int y = 0; y < 800; ++y)
        for (int x = 0; x < 800; ++x)
            picture.Row(y)[x] = x % 2 == 0 ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
    PictureLayer layer;
    layer.SetPicture(picture, 0.125);
    QVERIFY(layer.Copy().pixels.IsEmpty());
    QVERIFY(layer.IsAwaitingFirstCopy());
    QVERIFY(Drawn(layer, 0.125).pixel(50, 50) != Nothing);
    QTRY_VERIFY(!layer.Copy().pixels.IsEmpty());
    QVERIFY(!layer.IsAwaitingFirstCopy());
    QCOMPARE(layer.Copy().factor, 4);
    QCOMPARE(Drawn(layer, 0.125).pixel(50, 50), qRgb(128, 128, 128)); // 127.5
}

void TestPictureLayer::ShowsTheOldCopyUntilTheNewOneIsThere()
{
    PictureLayer layer;
    layer.SetPicture(Plain(800, 800, Red), 0.125);
    QTRY_VERIFY(!layer.Copy().pixels.IsEmpty());
    layer.SetPicture(Plain(800, 800, Green), 0.125);
    QCOMPARE(Drawn(layer, 0.125).pixel(50, 50), Red);
    QVERIFY(!layer.IsAwaitingFirstCopy());
    QTRY_COMPARE(Drawn(layer, 0.125).pixel(50, 50), Green);
}

void TestPictureLayer::EndsWithTheNewestPicture()
{
    PictureLayer layer;
    layer.SetPicture(Plain(800, 800, Red), 0.125);
    QTRY_VERIFY(!layer.Copy().pixels.IsEmpty());
    QVector<QRgb> seen;
    connect(&layer, &PictureLayer::Changed, this, [&] { seen.append(Drawn(layer, 0.125).pixel(50, 50)); });
    for (int i = 0; i < 50; ++i)
        layer.SetPicture(Plain(800, 800, qRgb(0, i, 0)), 0.125);
    layer.SetPicture(Plain(800, 800, Blue), 0.125);
    QTRY_COMPARE(Drawn(layer, 0.125).pixel(50, 50), Blue);
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(Drawn(layer, 0.125).pixel(50, 50), Blue);
    // Never back to a picture from before the one shown last.
    int last = -1;
    for (const QRgb color : qAsConst(seen)) {
        const int order = color == Red ? -1 : color == Blue ? 1000 : qGreen(color);
        QVERIFY(order >= last);
        last = order;
    }
}

void TestPictureLayer::ForgetsTheCopyOfAPictureOfAnotherSize()
{
    PictureLayer layer;
    layer.SetPicture(Plain(800, 800, Red), 0.125);
    QTRY_VERIFY(!layer.Copy().pixels.IsEmpty());
    layer.SetPicture(Plain(800, 799, Green), 0.125);
    QVERIFY(layer.Copy().pixels.IsEmpty());
    QCOMPARE(Drawn(layer, 0.125).pixel(50, 50), Green);
    QTRY_VERIFY(!layer.Copy().pixels.IsEmpty());
}

void TestPictureLayer::DrawsTheNewPictureWhenZoomedOutLater()
{
    PictureLayer layer;
    layer.SetPicture(Plain(800, 800, Red), 0.125);
    QTRY_VERIFY(!layer.Copy().pixels.IsEmpty());
    layer.SetZoom(1);
    layer.SetPicture(Plain(800, 800, Green), 1);
    QCOMPARE(Drawn(layer, 1).pixel(50, 50), Green);
    layer.SetZoom(0.125);
    QCOMPARE(Drawn(layer, 0.125).pixel(50, 50), Green);
    QTRY_VERIFY(!layer.Copy().pixels.IsEmpty());
    QCOMPARE(Drawn(layer, 0.125).pixel(50, 50), Green);
}

void TestPictureLayer::TakesOverTheCopyToo()
{
    PictureLayer before;
    PictureLayer after;
    before.SetPicture(Plain(800, 800, Red), 0.125);
    after.SetPicture(Plain(800, 800, Green), 0.125);
    QTRY_VERIFY(!before.Copy().pixels.IsEmpty() && !after.Copy().pixels.IsEmpty());
    before.TakeOver(after);
    QVERIFY(before.Picture().SharesPixelsWith(after.Picture()));
    QVERIFY(before.Copy().pixels.SharesPixelsWith(after.Copy().pixels));
    QCOMPARE(Drawn(before, 0.125).pixel(50, 50), Green);
    after.SetPicture({}, 0.125);
    QCOMPARE(Drawn(before, 0.125).pixel(50, 50), Green);
    // A copy that is still of the picture before is made anew.
    after.SetPicture(Plain(800, 800, Red), 0.125);
    QTRY_VERIFY(!after.Copy().pixels.IsEmpty());
    after.SetPicture(Plain(800, 800, Blue), 0.125);
    before.TakeOver(after);
    QTRY_COMPARE(Drawn(before, 0.125).pixel(50, 50), Blue);
}

void TestPictureLayer::MakesTheCopyThatTheZoomNeeds()
{
    PictureLayer layer;
    layer.SetPicture(Plain(800, 800, Red), 1);
    for (const double zoom : {0.4, 0.2, 0.1, 0.05, 0.4})
        layer.SetZoom(zoom);
    QTRY_COMPARE(layer.Copy().factor, 2);
    layer.SetZoom(0.05);
    QCOMPARE(layer.Copy().factor, 2); // goes on being shown
    QCOMPARE(Drawn(layer, 0.05).pixel(20, 20), Red);
    QTRY_COMPARE(layer.Copy().factor, 16);
    QCOMPARE(Drawn(layer, 0.05).pixel(20, 20), Red);
    QCOMPARE(Drawn(layer, 0.05).pixel(41, 20), Nothing);
}

void TestPictureLayer::ShowsACheckerboardThroughTransparentPixels()
{
    RGBA32iImage picture = Plain(50, 50, 0);
    picture.Row(0)[0] = Red;
    PictureLayer layer;
    layer.SetPicture(picture, 1);
    const QImage image = Drawn(layer, 1);
    QCOMPARE(image.pixel(0, 0), Red);
    QVERIFY(image.pixel(4, 4) != image.pixel(12, 4));
    QCOMPARE(image.pixel(4, 4), image.pixel(12, 12));
    QCOMPARE(image.pixel(12, 4), image.pixel(4, 12));
    QCOMPARE(image.pixel(60, 60), Nothing);
}

void TestPictureLayer::DrawsPicturesWiderThanTextures()
{
    // Beyond 32767 texture coordinates overflow in QPainter.
    RGBA32iImage picture = Plain(70000, 10, Red);
    for (int y = 0; y < 10; ++y)
        std::fill_n(picture.Row(y) + 69000, 1000, YDRGBA32i(Blue));
    PictureLayer layer;
    layer.SetPicture(picture, 0.3);
    QImage image(22000, 5, QImage::Format_RGB32);
    const auto draw = [&] {
        image.fill(Nothing);
        QPainter painter(&image);
        layer.Draw(painter, {QPointF(0, 0), 0.3}, image.rect(), false);
    };
    draw();
    QCOMPARE(image.pixel(10000, 1), Red);
    QCOMPARE(image.pixel(20990, 1), Blue);
    QTRY_VERIFY(!layer.Copy().pixels.IsEmpty());
    draw();
    QCOMPARE(image.pixel(20600, 1), Red);
    QCOMPARE(image.pixel(20990, 1), Blue);
}

void TestPictureLayer::IsDestroyedWhileACopyIsMade()
{
    for (int i = 0; i < 20; ++i) {
        auto layer = std::make_unique<PictureLayer>();
        layer->SetPicture(Plain(2000, 1000, Red), 0.1);
        QVERIFY(layer->IsAwaitingFirstCopy());
        layer.reset();
    }
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

void TestPictureLayer::DrawsNothingWithoutAPicture()
{
    PictureLayer layer;
    layer.SetPicture({}, 0.1);
    QVERIFY(!layer.IsAwaitingFirstCopy());
    QCOMPARE(Drawn(layer, 0.1).pixel(0, 0), Nothing);
    layer.SetPicture(Plain(8, 8, Red), 1);
    layer.SetPicture({}, 1);
    QCOMPARE(Drawn(layer, 1).pixel(0, 0), Nothing);
}

QTEST_MAIN(TestPictureLayer)
#include "tst_PictureLayer.moc"
