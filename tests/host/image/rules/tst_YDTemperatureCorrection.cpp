#include "KernelCheck.h"
#include "image/YDTemperatureCorrection.h"

#include <QTest>

#include <cstdlib>
#include <limits>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();

struct Settings
{
    int temperature = 6500;
    int strength = 100;
    int tint = 0;
};

YDTemperatureCorrection RuleFor(const Settings& settings)
{
    YDTemperatureCorrection rule;
    rule.SetData(settings.temperature, settings.strength, settings.tint);
    return rule;
}

YDRGBA32i Changed(const Settings& settings, YDRGBA32i pixel)
{
    RuleFor(settings)(pixel);
    return pixel;
}

YDRGBA32i Pixel(int r, int g, int b, int a = 255) { return {quint8(b), quint8(g), quint8(r), quint8(a)}; }

bool AreClose(const YDRGBA32i& x, const YDRGBA32i& y, int levels)
{
    return std::abs(x.r - y.r) <= levels && std::abs(x.g - y.g) <= levels && std::abs(x.b - y.b) <= levels;
}

double LumaOf(const YDRGBA32i& pixel) { return 0.2126 * pixel.r + 0.7152 * pixel.g + 0.0722 * pixel.b; }

QByteArray Text(const YDRGBA32i& p) { return QByteArray::number(QRgb(p), 16); }

} // namespace

Q_DECLARE_METATYPE(Settings)
Q_DECLARE_METATYPE(YDRGBA32i)

class TestYDTemperatureCorrection : public QObject
{
    Q_OBJECT

private slots:
    void LightHasTheColourOfABlackBody_data();
    void LightHasTheColourOfABlackBody();
    void HotterLightIsBluerAndLessRed();
    void LightOfAnyTemperatureHasAColour();

    void NeutralSettingsAreTheIdentity_data();
    void NeutralSettingsAreTheIdentity();
    void MadeByDefaultItChangesNothing();
    void GreysTakeTheColourOfTheLightAndKeepTheirLuma();
    void LowTemperaturesWarmAndHighOnesCool();
    void TintGoesFromGreenToMagenta();
    void BlackAndWhiteStay();
    void LumaIsKeptForEveryColour();
    void StrengthMixesWithWhatWas();
    void SmoothRampsStaySmooth_data();
    void SmoothRampsStaySmooth();
    void AlphaIsCarriedThrough();
    void SettingsOutsideCountAsTheNearestBound_data();
    void SettingsOutsideCountAsTheNearestBound();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
    void RowsEqualPixelsForAnySettings();
};

void TestYDTemperatureCorrection::LightHasTheColourOfABlackBody_data()
{
    QTest::addColumn<int>("kelvin");
    QTest::addColumn<YDRGBA32i>("colour");
    // From the chromaticities of the Planckian locus as published: x, y, then Y = 1, sRGB's matrix, the
    // brightest channel scaled to 1, encoded.
    QTest::newRow("candle, .5267 .4133") << 2000 << Pixel(255, 139, 22);
    QTest::newRow("illuminant A, .4476 .4074") << 2856 << Pixel(255, 178, 100);
    QTest::newRow(".3805 .3768") << 4000 << Pixel(255, 211, 165);
    QTest::newRow(".3451 .3516") << 5000 << Pixel(255, 230, 208);
    QTest::newRow(".3135 .3237") << 6500 << Pixel(255, 249, 254);
    QTest::newRow(".2807 .2884") << 10000 << Pixel(205, 217, 255);
}

void TestYDTemperatureCorrection::LightHasTheColourOfABlackBody()
{
    QFETCH(int, kelvin);
    QFETCH(YDRGBA32i, colour);
    const YDRGBA32i actual = YDTemperatureCorrection::GetTemperatureColor(kelvin);
    QVERIFY2(AreClose(actual, colour, 3), Text(actual)); // of the fit to the colour matching functions
    QCOMPARE(int(actual.a), 255);
}

void TestYDTemperatureCorrection::HotterLightIsBluerAndLessRed()
{
    YDRGBA32i colder = YDTemperatureCorrection::GetTemperatureColor(1000);
    for (int kelvin = 1100; kelvin <= 40000; kelvin += 100) {
        const YDRGBA32i hotter = YDTemperatureCorrection::GetTemperatureColor(kelvin);
        QVERIFY2(hotter.b >= colder.b && hotter.r <= colder.r, Text(hotter));
        QCOMPARE(int(std::max({hotter.r, hotter.g, hotter.b})), 255);
        QVERIFY2(AreClose(colder, hotter, 24), Text(hotter));
        colder = hotter;
    }
}

void TestYDTemperatureCorrection::LightOfAnyTemperatureHasAColour()
{
    const auto colour = [](int kelvin) { return QRgb(YDTemperatureCorrection::GetTemperatureColor(kelvin)); };
    for (const int kelvin : {Lowest, -1, 0, 999})
        QCOMPARE(colour(kelvin), colour(1000));
    for (const int kelvin : {40001, Highest})
        QCOMPARE(colour(kelvin), colour(40000));
}

void TestYDTemperatureCorrection::NeutralSettingsAreTheIdentity_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::newRow("the light that is") << Settings{6500, 100, 0};
    QTest::newRow("the light that is, half") << Settings{6500, 50, 0};
    QTest::newRow("the light that is, a third") << Settings{6500, 33, 0};
    QTest::newRow("no strength") << Settings{1500, 0, 80};
}

void TestYDTemperatureCorrection::NeutralSettingsAreTheIdentity()
{
    QFETCH(Settings, settings);
    const YDTemperatureCorrection rule = RuleFor(settings);
    std::minstd_rand random(1);
    for (const KernelCheck::Row& row : {KernelCheck::ColourCube(), KernelCheck::RandomRow(200000, random)}) {
        for (YDRGBA32i pixel : row) {
            const YDRGBA32i before = pixel;
            rule(pixel);
            QCOMPARE(QRgb(pixel), QRgb(before));
        }
    }
}

void TestYDTemperatureCorrection::MadeByDefaultItChangesNothing()
{
    KernelCheck::Row row = KernelCheck::ColourCube();
    std::for_each(row.begin(), row.end(), YDTemperatureCorrection());
    QVERIFY(row == KernelCheck::ColourCube());
}

void TestYDTemperatureCorrection::GreysTakeTheColourOfTheLightAndKeepTheirLuma()
{
    for (const int kelvin : {2500, 4000, 9000, 20000}) {
        const YDRGBA32i light = YDTemperatureCorrection::GetTemperatureColor(kelvin);
        const YDRGBA32i neutral = YDTemperatureCorrection::GetTemperatureColor(6500);
        const double r = double(light.r) / neutral.r;
        const double g = double(light.g) / neutral.g;
        const double b = double(light.b) / neutral.b;
        const double scale = 100.0 / (0.2126 * r + 0.7152 * g + 0.0722 * b);
        const YDRGBA32i expected = Pixel(qRound(r * scale), qRound(g * scale), qRound(b * scale));
        const YDRGBA32i actual = Changed({kelvin, 100, 0}, Pixel(100, 100, 100));
        QVERIFY2(AreClose(actual, expected, 1), Text(actual));
    }
}

void TestYDTemperatureCorrection::LowTemperaturesWarmAndHighOnesCool()
{
    const YDRGBA32i skin = Pixel(220, 170, 140);
    const YDRGBA32i warm = Changed({4000, 50, 0}, skin);
    QVERIFY2(warm.r > skin.r && warm.b < skin.b, Text(warm));
    const YDRGBA32i cool = Changed({10000, 50, 0}, skin);
    QVERIFY2(cool.r < skin.r && cool.b > skin.b, Text(cool));
}

void TestYDTemperatureCorrection::TintGoesFromGreenToMagenta()
{
    // Green changes by 2^(1/2) against the others: with 0.2848 of the luma in red and blue
    // 80 / (0.2848 + 0.7152 * 1.41421) = 61.72, and 80 / (0.2848 + 0.7152 / 1.41421) = 101.20.
    QCOMPARE(Text(Changed({6500, 100, -100}, Pixel(80, 80, 80))), Text(Pixel(62, 87, 62)));
    QCOMPARE(Text(Changed({6500, 100, 100}, Pixel(80, 80, 80))), Text(Pixel(101, 72, 101)));
}

void TestYDTemperatureCorrection::BlackAndWhiteStay()
{
    for (const int kelvin : {1000, 3000, 6500, 12000, 40000}) {
        for (const int tint : {-100, 0, 100}) {
            QCOMPARE(Text(Changed({kelvin, 100, tint}, Pixel(0, 0, 0))), Text(Pixel(0, 0, 0)));
            QCOMPARE(Text(Changed({kelvin, 100, tint}, Pixel(255, 255, 255))), Text(Pixel(255, 255, 255)));
        }
    }
}

void TestYDTemperatureCorrection::LumaIsKeptForEveryColour()
{
    for (const int kelvin : {1000, 3000, 12000, 40000}) {
        for (const int tint : {-100, 0, 70}) {
            const YDTemperatureCorrection rule = RuleFor({kelvin, 100, tint});
            for (const YDRGBA32i& before : KernelCheck::ColourCube()) {
                YDRGBA32i after = before;
                rule(after);
                QVERIFY2(std::abs(LumaOf(after) - LumaOf(before)) < 0.6, Text(before)); // each is rounded
            }
        }
    }
}

void TestYDTemperatureCorrection::StrengthMixesWithWhatWas()
{
    const YDRGBA32i before = Pixel(90, 120, 200);
    const YDRGBA32i full = Changed({3000, 100, 20}, before);
    for (int strength = 0; strength <= 100; ++strength) {
        const auto mixed = [strength](int from, int to) {
            return from + qRound((to - from) * strength / 100.0);
        };
        const YDRGBA32i expected =
            Pixel(mixed(before.r, full.r), mixed(before.g, full.g), mixed(before.b, full.b));
        QVERIFY(AreClose(Changed({3000, strength, 20}, before), expected, 1));
    }
}

void TestYDTemperatureCorrection::SmoothRampsStaySmooth_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::newRow("warm") << Settings{3500, 50, 0};
    QTest::newRow("cool") << Settings{12000, 50, 0};
    QTest::newRow("magenta") << Settings{6500, 50, 50};
    QTest::newRow("green") << Settings{6500, 50, -50};
}

/// Skies from black over blue to white, a level at a time.
void TestYDTemperatureCorrection::SmoothRampsStaySmooth()
{
    QFETCH(Settings, settings);
    YDRGBA32i last = Changed(settings, Pixel(0, 0, 0));
    for (int v = 1; v <= 255; ++v) {
        const YDRGBA32i next = Changed(settings, Pixel(v * v / 255, v, std::min(2 * v, (v + 255) / 2)));
        QVERIFY2(AreClose(last, next, 4), Text(next));
        last = next;
    }
    QCOMPARE(Text(last), Text(Pixel(255, 255, 255)));
}

void TestYDTemperatureCorrection::AlphaIsCarriedThrough()
{
    QCOMPARE(int(Changed({3000, 100, 10}, Pixel(200, 150, 100, 40)).a), 40);
}

void TestYDTemperatureCorrection::SettingsOutsideCountAsTheNearestBound_data()
{
    QTest::addColumn<Settings>("outside");
    QTest::addColumn<Settings>("bounds");
    QTest::newRow("lowest") << Settings{Lowest, Highest, Lowest} << Settings{1000, 100, -100};
    QTest::newRow("just outside") << Settings{40001, 101, 101} << Settings{40000, 100, 100};
    QTest::newRow("highest") << Settings{Highest, Highest, Highest} << Settings{40000, 100, 100};
    QTest::newRow("negative strength") << Settings{3000, Lowest, 40} << Settings{3000, 0, 40};
}

void TestYDTemperatureCorrection::SettingsOutsideCountAsTheNearestBound()
{
    QFETCH(Settings, outside);
    QFETCH(Settings, bounds);
    KernelCheck::Row actual = KernelCheck::ColourCube();
    KernelCheck::Row expected = actual;
    std::for_each(actual.begin(), actual.end(), RuleFor(outside));
    std::for_each(expected.begin(), expected.end(), RuleFor(bounds));
    QVERIFY(actual == expected);
}

void TestYDTemperatureCorrection::RowsEqualPixels_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::newRow("neutral") << Settings{6500, 50, 0};
    QTest::newRow("no strength") << Settings{1000, 0, 0};
    QTest::newRow("warm") << Settings{3000, 50, 0};
    QTest::newRow("cool") << Settings{15000, 73, 12};
    QTest::newRow("reddest") << Settings{1000, 100, 100};
    QTest::newRow("reddest, green") << Settings{1000, 100, -100};
    QTest::newRow("bluest") << Settings{40000, 100, -100};
    QTest::newRow("bluest, magenta") << Settings{40000, 1, 100};
}

void TestYDTemperatureCorrection::RowsEqualPixels()
{
    QFETCH(Settings, settings);
    QCOMPARE(KernelCheck::Difference(VectorKernels::TemperatureRow, RuleFor(settings)), QString());
}

void TestYDTemperatureCorrection::RowsEqualPixelsForAnySettings()
{
    std::minstd_rand random(3);
    const auto number = [&random](int below) { return int(random() >> 4) % below; };
    const KernelCheck::Row pixels = KernelCheck::RandomRow(5000, random);
    for (int i = 0; i < 200; ++i) {
        const YDTemperatureCorrection rule = RuleFor({1000 + number(39001), number(101), number(201) - 100});
        for (const qint64 target : KernelCheck::Targets()) {
            const KernelCheck::Restriction restriction(target);
            QCOMPARE(KernelCheck::RowDifference(rule, pixels, 0, int(pixels.size())), QString());
        }
    }
}

QTEST_APPLESS_MAIN(TestYDTemperatureCorrection)
#include "tst_YDTemperatureCorrection.moc"
