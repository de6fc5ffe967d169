#include "ColorDifference.h"
#include "Photographs.h"
#include "TestPictures.h"
#include "image/KVIterativeWBTransformation.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Function = KVWBTransformation::BalanceFunction;

constexpr int PhotographWidth = 600;

/// `rule` over a copy of the picture.
template <class Rule>
RGBA32iImage Applied(const Rule& rule, const RGBA32iImage& picture)
{
    const RGBA32iImage result = picture.DeepCopy();
    for (int y = 0; y < result.Height(); ++y)
        rule.ProcessRow(result.Row(y), result.Width());
    return result;
}

RGBA32iImage Balanced(const RGBA32iImage& picture, Function function, int strength = 100)
{
    return Applied(KVIterativeWBTransformation(picture, function, strength), picture);
}

template <class Change>
RGBA32iImage Changed(const RGBA32iImage& picture, const Change& change)
{
    const RGBA32iImage result = picture.DeepCopy();
    for (int y = 0; y < result.Height(); ++y)
        std::for_each(result.Row(y), result.Row(y) + result.Width(), change);
    return result;
}

quint8 Scaled(quint8 level, double gain) { return quint8(std::min(255L, std::lround(level * gain))); }

quint8 Exposed(quint8 level, double stops)
{
    const double light = std::min(1.0, SRgb::ToLinear(level / 255.0) * std::exp2(stops));
    return quint8(std::lround(255.0 * SRgb::FromLinear(light)));
}

/// Left to right from black to white.
RGBA32iImage Ramp()
{
    const RGBA32iImage ramp(256, 8);
    for (int y = 0; y < ramp.Height(); ++y)
        for (int x = 0; x < 256; ++x)
            ramp.Row(y)[x] = YDRGBA32i(quint8(x), quint8(x), quint8(x), 255);
    return ramp;
}

} // namespace

class TestKVIterativeWBTransformation : public QObject
{
    Q_OBJECT

private slots:
    void AutoTakesAStrongCastAway_data();
    void AutoTakesAStrongCastAway();
    void AutoChangesANeutralPictureLittle_data();
    void AutoChangesANeutralPictureLittle();
    void AutoKeepsWhiteWhite();
    void AutoBringsNoOtherCast();
    void ExposureComesNearerToTheOriginal_data();
    void ExposureComesNearerToTheOriginal();
    void EachExposureFunctionWorksOneWay_data();
    void EachExposureFunctionWorksOneWay();
    void TablesNeverFall_data();
    void TablesNeverFall();
    void StrengthMixes();
    void NothingToGoByChangesNothing_data();
    void NothingToGoByChangesNothing();
    void UnknownFunctionsChangeNothing_data();
    void UnknownFunctionsChangeNothing();
    void AlphaTakesNoPart();
    void RowsEqualPixels();
};

void TestKVIterativeWBTransformation::AutoTakesAStrongCastAway_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("r");
    QTest::addColumn<double>("g");
    QTest::addColumn<double>("b");
    for (const char* const name : {"friends_by_Aitzol_Berasategi.jpg", "life_by_Aitzol_Berasategi.jpg",
                                   "picosdeeuropa_by_Aitzol_Berasategi.jpg"}) {
        QTest::addRow("tungsten, %.7s", name) << name << 1.2 << 1.0 << 0.6;
        QTest::addRow("shade, %.7s", name) << name << 0.8 << 0.98 << 1.2;
    }
}

void TestKVIterativeWBTransformation::AutoTakesAStrongCastAway()
{
    QFETCH(QString, name);
    QFETCH(double, r);
    QFETCH(double, g);
    QFETCH(double, b);
    const RGBA32iImage original = Photographs::Load(name, PhotographWidth);
    QVERIFY(!original.IsEmpty());
    const RGBA32iImage cast = Changed(original, [=](YDRGBA32i& pixel) {
        pixel = YDRGBA32i(Scaled(pixel.b, b), Scaled(pixel.g, g), Scaled(pixel.r, r), pixel.a);
    });
    const double before = ColorDifference::Mean(cast, original);
    const double after = ColorDifference::Mean(Balanced(cast, KVWBTransformation::Auto), original);
    qInfo("mean colour difference %.1f, balanced %.1f", before, after);
    QVERIFY(before > 12.0);
    QVERIFY2(after < 4.0, qPrintable(QString::number(after)));
}

void TestKVIterativeWBTransformation::AutoChangesANeutralPictureLittle_data()
{
    QTest::addColumn<QString>("name");
    for (const char* const name : {"friends_by_Aitzol_Berasategi.jpg", "life_by_Aitzol_Berasategi.jpg",
                                   "picosdeeuropa_by_Aitzol_Berasategi.jpg"})
        QTest::newRow(name) << name;
}

void TestKVIterativeWBTransformation::AutoChangesANeutralPictureLittle()
{
    QFETCH(QString, name);
    const RGBA32iImage original = Photographs::Load(name, PhotographWidth);
    QVERIFY(!original.IsEmpty());
    const double change = ColorDifference::Mean(Balanced(original, KVWBTransformation::Auto), original);
    QVERIFY2(change < 2.5, qPrintable(QString::number(change)));
}

void TestKVIterativeWBTransformation::AutoKeepsWhiteWhite()
{
    RGBA32iImage picture = TestPictures::Random(300, 200, 5);
    picture =
        Changed(picture, [](YDRGBA32i& pixel) { pixel = YDRGBA32i(pixel.b / 2, pixel.g, pixel.r, 255); });
    for (int y = 0; y < 20; ++y)
        std::fill_n(picture.Row(y), 40, YDRGBA32i(255, 255, 255, 255));
    const RGBA32iImage balanced = Balanced(picture, KVWBTransformation::Auto);
    QVERIFY(!TestPictures::AreEqual(balanced, picture));
    QCOMPARE(QRgb(balanced.Row(0)[3]), 0xffffffffu);
}

/// The boards in sunlight, which the cast brings to the end of red's scale, become white again, not pink.
void TestKVIterativeWBTransformation::AutoBringsNoOtherCast()
{
    const RGBA32iImage original =
        Photographs::Load(QStringLiteral("friends_by_Aitzol_Berasategi.jpg"), PhotographWidth);
    const RGBA32iImage balanced =
        Balanced(Changed(original,
                         [](YDRGBA32i& pixel) {
                             pixel = YDRGBA32i(Scaled(pixel.b, 0.6), pixel.g, Scaled(pixel.r, 1.2), pixel.a);
                         }),
                 KVWBTransformation::Auto);
    int bright = 0;
    int astray = 0;
    for (int y = 0; y < original.Height(); ++y)
        for (int x = 0; x < original.Width(); ++x) {
            const auto before = ColorDifference::LabOf(original.Row(y)[x]);
            const auto after = ColorDifference::LabOf(balanced.Row(y)[x]);
            const bool isBright = before[0] > 80.0;
            bright += isBright;
            astray += isBright && std::hypot(before[1] - after[1], before[2] - after[2]) > 8.0;
        }
    QVERIFY(bright > 5000);
    QVERIFY2(astray < bright / 100, qPrintable(QStringLiteral("%1 of %2").arg(astray).arg(bright)));
}

void TestKVIterativeWBTransformation::ExposureComesNearerToTheOriginal_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("stops");
    for (const char* const name :
         {"friends_by_Aitzol_Berasategi.jpg", "life_by_Aitzol_Berasategi.jpg",
          "picosdeeuropa_by_Aitzol_Berasategi.jpg", "sunset_by_Aitzol_Berasategi.jpg"}) {
        QTest::addRow("over, %.7s", name) << name << 1.5;
        QTest::addRow("under, %.7s", name) << name << -1.5;
    }
}

void TestKVIterativeWBTransformation::ExposureComesNearerToTheOriginal()
{
    QFETCH(QString, name);
    QFETCH(double, stops);
    const RGBA32iImage original = Photographs::Load(name, PhotographWidth);
    QVERIFY(!original.IsEmpty());
    const RGBA32iImage exposed = Changed(original, [stops](YDRGBA32i& pixel) {
        pixel = YDRGBA32i(Exposed(pixel.b, stops), Exposed(pixel.g, stops), Exposed(pixel.r, stops), pixel.a);
    });
    const Function function =
        stops > 0 ? KVWBTransformation::Overexposure : KVWBTransformation::Underexposure;
    const double before = ColorDifference::Mean(exposed, original);
    const double after = ColorDifference::Mean(Balanced(exposed, function), original);
    qInfo("mean colour difference %.1f, balanced %.1f", before, after);
    QVERIFY2(after < 0.75 * before, qPrintable(QString::number(after)));
}

void TestKVIterativeWBTransformation::EachExposureFunctionWorksOneWay_data()
{
    QTest::addColumn<int>("grey");
    QTest::addColumn<int>("function");
    QTest::addColumn<int>("sign");
    QTest::newRow("bright, overexposure darkens") << 220 << int(KVWBTransformation::Overexposure) << -1;
    QTest::newRow("dark, overexposure keeps") << 40 << int(KVWBTransformation::Overexposure) << 0;
    QTest::newRow("bright, underexposure keeps") << 220 << int(KVWBTransformation::Underexposure) << 0;
    QTest::newRow("dark, underexposure brightens") << 40 << int(KVWBTransformation::Underexposure) << 1;
}

void TestKVIterativeWBTransformation::EachExposureFunctionWorksOneWay()
{
    QFETCH(int, grey);
    QFETCH(int, function);
    QFETCH(int, sign);
    const RGBA32iImage result = Balanced(TestPictures::Grey(20, 10, grey), Function(function));
    const int change = result.Row(5)[5].g - grey;
    QCOMPARE((change > 0) - (change < 0), sign);
}

void TestKVIterativeWBTransformation::TablesNeverFall_data()
{
    QTest::addColumn<int>("function");
    QTest::addColumn<int>("grey");
    for (const int grey : {1, 20, 100, 130, 220, 250, 254})
        for (const int function : {0, 1, 2})
            QTest::addRow("function %d, grey %d", function, grey) << function << grey;
}

void TestKVIterativeWBTransformation::TablesNeverFall()
{
    QFETCH(int, function);
    QFETCH(int, grey);
    const RGBA32iImage analysed = Changed(TestPictures::Grey(64, 64, grey), [](YDRGBA32i& pixel) {
        pixel.b = quint8(pixel.b / 5); // dims green and red by auto, at the bounds of the gains
    });
    const RGBA32iImage ramp = Ramp();
    const RGBA32iImage mapped = Applied(KVIterativeWBTransformation(analysed, Function(function), 100), ramp);
    for (int x = 1; x < 256; ++x) {
        const YDRGBA32i& here = mapped.Row(0)[x];
        const YDRGBA32i& before = mapped.Row(0)[x - 1];
        QVERIFY(here.r >= before.r && here.g >= before.g && here.b >= before.b);
    }
    QCOMPARE(QRgb(mapped.Row(0)[0]), 0xff000000u);
    if (function != KVWBTransformation::Auto) // which may dim a channel
        QCOMPARE(QRgb(mapped.Row(0)[255]), 0xffffffffu);
}

void TestKVIterativeWBTransformation::StrengthMixes()
{
    const RGBA32iImage picture = TestPictures::Grey(40, 30, 40);
    const RGBA32iImage full = Balanced(picture, KVWBTransformation::Underexposure, 100);
    const RGBA32iImage half = Balanced(picture, KVWBTransformation::Underexposure, 50);
    const int way = full.Row(0)[0].g - 40;
    QVERIFY(way > 10);
    QCOMPARE(half.Row(0)[0].g - 40, int(std::lround(way / 2.0)));
    QVERIFY(TestPictures::AreEqual(Balanced(picture, KVWBTransformation::Underexposure, 0), picture));
    QVERIFY(TestPictures::AreEqual(Balanced(picture, KVWBTransformation::Underexposure, -5), picture));
    QVERIFY(TestPictures::AreEqual(Balanced(picture, KVWBTransformation::Underexposure, 1000), full));
}

void TestKVIterativeWBTransformation::NothingToGoByChangesNothing_data()
{
    QTest::addColumn<RGBA32iImage>("analysed");
    QTest::newRow("an empty picture") << RGBA32iImage();
    QTest::newRow("a black picture") << RGBA32iImage(50, 40);
    QTest::newRow("a white picture") << TestPictures::Grey(50, 40, 255);
    QTest::newRow("a channel that is dark everywhere")
        << Changed(TestPictures::Noise(50, 40), [](YDRGBA32i& pixel) { pixel.b = 0; });
}

void TestKVIterativeWBTransformation::NothingToGoByChangesNothing()
{
    QFETCH(RGBA32iImage, analysed);
    const RGBA32iImage ramp = Ramp();
    const KVIterativeWBTransformation rule(analysed, KVWBTransformation::Auto, 100);
    QVERIFY(TestPictures::AreEqual(Applied(rule, ramp), ramp));
}

void TestKVIterativeWBTransformation::UnknownFunctionsChangeNothing_data()
{
    QTest::addColumn<int>("function");
    for (const int function : {-1, 3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::addRow("%d", function) << function;
}

void TestKVIterativeWBTransformation::UnknownFunctionsChangeNothing()
{
    QFETCH(int, function);
    const RGBA32iImage picture = TestPictures::Noise(60, 50);
    QVERIFY(TestPictures::AreEqual(Balanced(picture, Function(function)), picture));
}

void TestKVIterativeWBTransformation::AlphaTakesNoPart()
{
    const RGBA32iImage opaque = TestPictures::Noise(90, 70);
    const RGBA32iImage clear = Changed(opaque, [](YDRGBA32i& pixel) { pixel.a = 3; });
    const RGBA32iImage balanced = Balanced(clear, KVWBTransformation::Auto);
    QCOMPARE(int(balanced.Row(5)[5].a), 3);
    QVERIFY(TestPictures::AreEqual(Changed(balanced, [](YDRGBA32i& pixel) { pixel.a = 255; }),
                                   Balanced(opaque, KVWBTransformation::Auto)));
}

void TestKVIterativeWBTransformation::RowsEqualPixels()
{
    const RGBA32iImage picture = TestPictures::Random(301, 3, 9);
    KVIterativeWBTransformation rule(picture, KVWBTransformation::Auto, 80);
    const RGBA32iImage pixels = picture.DeepCopy();
    rule.SetProcessingBuffer(pixels.Pixels());
    for (int y = 0; y < pixels.Height(); ++y)
        for (int x = 0; x < pixels.Width(); ++x)
            rule.ProcessPixel(qsizetype(y) * pixels.RowLength() + x);
    QVERIFY(TestPictures::AreEqual(Applied(rule, picture), pixels));
}

QTEST_GUILESS_MAIN(TestKVIterativeWBTransformation)
#include "tst_KVIterativeWBTransformation.moc"
