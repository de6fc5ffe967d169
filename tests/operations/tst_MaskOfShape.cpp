#include "MemoryLimit.h"
#include "operations/MaskOfShape.h"

#include <QTest>

#include <cmath>

namespace {

constexpr QSize Picture(400, 300);

QPainterPath Rectangle(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect);
    return path;
}

QPainterPath Ellipse(const QRectF& rect)
{
    QPainterPath path;
    path.addEllipse(rect);
    return path;
}

/// Coverage of a pixel of the picture; 0 outside the mask.
int At(const operations::Selection& mask, int x, int y)
{
    const QPoint place = QPoint(x, y) - mask.offset;
    if (!mask.bounds.contains(place))
        return 0;
    return mask.mask.Row(place.y())[place.x()].g;
}

QRect AreaOf(const operations::Selection& mask) { return mask.bounds.translated(mask.offset); }

} // namespace

class TestMaskOfShape : public QObject
{
    Q_OBJECT

private slots:
    void NoMaskSelectsAll();
    void ARectangleOfWholePixelsIsExact();
    void HalfAPixelIsHalfSelected();
    void AllFourChannelsAgree();
    void AnEllipseIsSmoothAndSymmetric();
    void TheMaskIsCroppedToThePicture();
    void AnInvertedSelectionIsTheComplement();
    void AShapeBesideThePictureSelectsNothing_data();
    void AShapeBesideThePictureSelectsNothing();
    void AFeatheredEdgeFadesLikeAGaussian_data();
    void AFeatheredEdgeFadesLikeAGaussian();
    void FeatheringKeepsTheSum();
    void FeatheringGrowsTheArea();
    void ThePicturesBorderDoesNotFade();
    void FarOutCoordinatesAreHarmless();
    void TilesLeaveNoSeams();
    void AMaskThatMemoryHasNoRoomForIsMissing();
};

void TestMaskOfShape::NoMaskSelectsAll()
{
    const operations::Selection mask;
    QVERIFY(mask.SelectsAll());
    QVERIFY(mask.bounds.isEmpty());
}

void TestMaskOfShape::ARectangleOfWholePixelsIsExact()
{
    const operations::Selection mask = operations::MaskOfShape(Rectangle({10, 20, 30, 40}), 0, Picture);
    QVERIFY(!mask.SelectsAll());
    QCOMPARE(AreaOf(mask), QRect(10, 20, 30, 40));
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 30; ++x)
            QCOMPARE(mask.mask.Row(y)[x], YDRGBA32i(255, 255, 255, 255));
}

void TestMaskOfShape::HalfAPixelIsHalfSelected()
{
    const operations::Selection mask = operations::MaskOfShape(Rectangle({10.5, 20, 4, 4}), 0, Picture);
    QCOMPARE(AreaOf(mask), QRect(10, 20, 5, 4));
    QVERIFY(std::abs(At(mask, 10, 21) - 128) <= 2);
    QCOMPARE(At(mask, 11, 21), 255);
    QVERIFY(std::abs(At(mask, 14, 21) - 128) <= 2);
}

void TestMaskOfShape::AllFourChannelsAgree()
{
    const operations::Selection mask = operations::MaskOfShape(Ellipse({10, 20, 31, 41}), 5, Picture);
    for (int y = 0; y < mask.mask.Height(); ++y) {
        for (int x = 0; x < mask.mask.Width(); ++x) {
            const YDRGBA32i pixel = mask.mask.Row(y)[x];
            QVERIFY(pixel.r == pixel.a && pixel.g == pixel.a && pixel.b == pixel.a);
        }
    }
}

void TestMaskOfShape::AnEllipseIsSmoothAndSymmetric()
{
    const operations::Selection mask = operations::MaskOfShape(Ellipse({100, 100, 80, 60}), 0, Picture);
    QCOMPARE(AreaOf(mask), QRect(100, 100, 80, 60));
    QCOMPARE(At(mask, 140, 130), 255);
    QCOMPARE(At(mask, 100, 100), 0);
    double sum = 0;
    int partly = 0;
    for (int y = 100; y < 160; ++y) {
        for (int x = 100; x < 180; ++x) {
            sum += At(mask, x, y) / 255.0;
            partly += At(mask, x, y) > 0 && At(mask, x, y) < 255 ? 1 : 0;
            QVERIFY(std::abs(At(mask, x, y) - At(mask, 279 - x, y)) <= 3);
        }
    }
    constexpr double Pi = 3.14159265358979;
    QVERIFY(std::abs(sum - Pi * 40 * 30) < 0.005 * Pi * 40 * 30);
    QVERIFY(partly > 100);
}

void TestMaskOfShape::TheMaskIsCroppedToThePicture()
{
    const operations::Selection mask = operations::MaskOfShape(Rectangle({-50, 250, 100, 100}), 0, Picture);
    QCOMPARE(AreaOf(mask), QRect(0, 250, 50, 50));
}

void TestMaskOfShape::AnInvertedSelectionIsTheComplement()
{
    const QPainterPath shape = Ellipse({100, 100, 81, 61});
    const QPainterPath inverted = Rectangle({QPointF(0, 0), Picture}).subtracted(shape);
    const operations::Selection mask = operations::MaskOfShape(shape, 0, Picture);
    const operations::Selection complement = operations::MaskOfShape(inverted, 0, Picture);
    QCOMPARE(AreaOf(complement), QRect(QPoint(0, 0), Picture));
    for (int y = 0; y < Picture.height(); ++y)
        for (int x = 0; x < Picture.width(); ++x)
            QVERIFY(std::abs(At(mask, x, y) + At(complement, x, y) - 255) <= 2);
}

void TestMaskOfShape::AShapeBesideThePictureSelectsNothing_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::newRow("left of it") << QRectF(-50, 10, 40, 40);
    QTest::newRow("below it") << QRectF(10, 301, 40, 40);
    QTest::newRow("too thin to count") << QRectF(10, 10, 0.001, 100);
}

void TestMaskOfShape::AShapeBesideThePictureSelectsNothing()
{
    QFETCH(QRectF, rect);
    const operations::Selection mask = operations::MaskOfShape(Rectangle(rect), 0, Picture);
    QVERIFY2(!mask.SelectsAll(), "no coverage image would mean the whole picture");
    QCOMPARE(mask.bounds, QRect(0, 0, 1, 1));
    QCOMPARE(mask.mask.Row(0)[0], YDRGBA32i(0, 0, 0, 0));
}

void TestMaskOfShape::AFeatheredEdgeFadesLikeAGaussian_data()
{
    QTest::addColumn<int>("feather");
    QTest::newRow("3 px") << 3;
    QTest::newRow("10 px") << 10;
    QTest::newRow("40 px") << 40;
}

/// Along the edge of a half plane, a Gaussian gives the normal distribution with half the feather as its
/// standard deviation.
void TestMaskOfShape::AFeatheredEdgeFadesLikeAGaussian()
{
    QFETCH(int, feather);
    const operations::Selection mask =
        operations::MaskOfShape(Rectangle({200, -100, 400, 500}), feather, Picture);
    const double sigma = feather / 2.0;
    for (int x = 100; x < 300; ++x) {
        const double distance = x + 0.5 - 200;
        const double expected = 127.5 * (1 + std::erf(distance / (sigma * std::sqrt(2.0))));
        QVERIFY2(std::abs(At(mask, x, 150) - expected) <= 8,
                 qPrintable(QStringLiteral("%1: %2, not %3").arg(x).arg(At(mask, x, 150)).arg(expected)));
    }
    for (int x = 101; x < 300; ++x)
        QVERIFY(At(mask, x, 150) >= At(mask, x - 1, 150));
}

void TestMaskOfShape::FeatheringKeepsTheSum()
{
    const operations::Selection mask = operations::MaskOfShape(Rectangle({150, 100, 100, 80}), 20, Picture);
    double sum = 0;
    for (int y = 0; y < Picture.height(); ++y)
        for (int x = 0; x < Picture.width(); ++x)
            sum += At(mask, x, y) / 255.0;
    QVERIFY(std::abs(sum - 8000) < 40);
}

void TestMaskOfShape::FeatheringGrowsTheArea()
{
    const operations::Selection mask = operations::MaskOfShape(Rectangle({150, 100, 100, 80}), 10, Picture);
    const QRect area = AreaOf(mask);
    QVERIFY(area.contains(QRect(150 - 10, 100 - 10, 120, 100)));
    QVERIFY(QRect(150 - 25, 100 - 25, 150, 130).contains(area));
    for (int x = area.left(); x <= area.right(); ++x)
        QVERIFY2(At(mask, area.left(), 140) > 0, "cropped to what is selected at all");
}

void TestMaskOfShape::ThePicturesBorderDoesNotFade()
{
    const operations::Selection mask =
        operations::MaskOfShape(Rectangle({-100, -100, 300, 600}), 20, Picture);
    QCOMPARE(At(mask, 0, 0), 255);
    QCOMPARE(At(mask, 0, 299), 255);
    QCOMPARE(At(mask, 100, 150), 255);
}

void TestMaskOfShape::FarOutCoordinatesAreHarmless()
{
    const operations::Selection mask =
        operations::MaskOfShape(Rectangle({-1e12, -1e12, 2e12, 2e12}), 500, Picture);
    QCOMPARE(AreaOf(mask), QRect(QPoint(0, 0), Picture));
    QCOMPARE(At(mask, 200, 150), 255);
}

void TestMaskOfShape::TilesLeaveNoSeams()
{
    const QSize wide(40000, 300);
    const operations::Selection mask = operations::MaskOfShape(Rectangle({10, 10, 39000, 280}), 0, wide);
    QCOMPARE(AreaOf(mask), QRect(10, 10, 39000, 280));
    for (int y = 0; y < 280; ++y)
        for (int x = 0; x < 39000; ++x)
            if (mask.mask.Row(y)[x].g != 255)
                QFAIL(qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
}

void TestMaskOfShape::AMaskThatMemoryHasNoRoomForIsMissing()
{
    const QSize giant(30000, 20000);
    const MemoryLimit noRoomForItsCoverage;
    const operations::Selection mask = operations::MaskOfShape(Rectangle({0, 0, 30000, 20000}), 0, giant);
    QVERIFY(mask.isMissing);
    QVERIFY2(!mask.SelectsAll(), "who does not ask adjusts nothing");
    QVERIFY(operations::MaskOfShape(Rectangle({0, 0, 30000, 20000}), 20, giant).isMissing);
    QVERIFY(!operations::MaskOfShape(Rectangle({10, 20, 30, 40}), 0, giant).isMissing);
    QVERIFY(!operations::MaskOfShape(Rectangle({10, 20, 30, 40}), 5, giant).isMissing);
}

QTEST_MAIN(TestMaskOfShape)
#include "tst_MaskOfShape.moc"
