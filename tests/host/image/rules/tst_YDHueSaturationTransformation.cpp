#include "KernelCheck.h"
#include "image/YDHueSaturationTransformation.h"

#include <QColor>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr double Roundings = 0.75; // levels: half of one, and what was rounded or cut before

struct Settings
{
    int hue = 0;
    int saturation = 0;
    int lightness = 0;
    bool colorize = false;
};

YDRGBA32i Changed(const Settings& settings, YDRGBA32i pixel)
{
    YDHueSaturationTransformation(settings.hue, settings.saturation, settings.lightness,
                                  settings.colorize)(pixel);
    return pixel;
}

YDRGBA32i Pixel(int r, int g, int b, int a = 255) { return {quint8(b), quint8(g), quint8(r), quint8(a)}; }

int Chroma(const YDRGBA32i& p) { return std::max({p.r, p.g, p.b}) - std::min({p.r, p.g, p.b}); }

int Sum(const YDRGBA32i& p) { return std::max({p.r, p.g, p.b}) + std::min({p.r, p.g, p.b}); }

/// A colour in real numbers, in levels.
struct RealColour
{
    double r;
    double g;
    double b;
};

/// Which of HSL's colours has this hue, in degrees, this chroma and this lightness, both in levels.
RealColour FromChroma(double hue, double chroma, double lightness)
{
    const auto channel = [=](double offset) {
        const double k = std::fmod(hue / 60 + offset, 6.0);
        return lightness + chroma * (std::clamp(std::abs(k - 3) - 1, 0.0, 1.0) - 0.5);
    };
    return {channel(0), channel(4), channel(2)};
}

double GreatestChroma(double lightness) { return 2 * std::min(lightness, 255 - lightness); }

double HueOf(const YDRGBA32i& p)
{
    const double chroma = Chroma(p);
    if (chroma == 0)
        return 0;
    const int greatest = std::max({p.r, p.g, p.b});
    const double sixths = greatest == p.r   ? (p.g - p.b) / chroma + 6
                          : greatest == p.g ? (p.b - p.r) / chroma + 2
                                            : (p.r - p.g) / chroma + 4;
    return 60 * std::fmod(sixths, 6.0);
}

double ChangedSaturation(double saturation, double setting)
{
    if (setting <= 0 || saturation == 0)
        return saturation * (1 + setting / 100);
    return std::min(saturation / (saturation + (1 - saturation) * (1 - setting / 100)), 8 * saturation);
}

double Moved(double level, int lightness)
{
    return level + ((lightness > 0 ? 255 : 0) - level) * std::abs(lightness) / 100;
}

RealColour ByFormula(const Settings& settings, const YDRGBA32i& p)
{
    if (settings.colorize) {
        const double lightness = Moved(0.2126 * p.r + 0.7152 * p.g + 0.0722 * p.b, settings.lightness);
        const double saturation = (settings.saturation + 100) / 200.0;
        return FromChroma(settings.hue, saturation * GreatestChroma(lightness), lightness);
    }
    const double lightness = Sum(p) / 2.0;
    const double room = GreatestChroma(lightness);
    const double saturation = room > 0 ? ChangedSaturation(Chroma(p) / room, settings.saturation) : 0;
    const RealColour turned = FromChroma(settings.hue + HueOf(p), saturation * room, lightness);
    return {Moved(turned.r, settings.lightness), Moved(turned.g, settings.lightness),
            Moved(turned.b, settings.lightness)};
}

/// How far the furthest channel of the changed pixel lies from the formula.
double Error(const Settings& settings, const YDRGBA32i& before, const YDRGBA32i& after)
{
    const RealColour expected = ByFormula(settings, before);
    return std::max(
        {std::abs(after.r - expected.r), std::abs(after.g - expected.g), std::abs(after.b - expected.b)});
}

Settings RandomSettings(std::minstd_rand& random)
{
    const auto number = [&random](int below) { return int(random() >> 4) % below; };
    Settings settings;
    settings.hue = number(360);
    settings.saturation = number(201) - 100;
    settings.lightness = number(201) - 100;
    settings.colorize = number(4) == 0;
    return settings;
}

/// HSL with real numbers, the hue in degrees and the rest in 0..1.
YDRGBA32i FromHsl(double hue, double saturation, double lightness)
{
    const QColor colour = QColor::fromHslF(hue / 360.0, saturation, lightness);
    return Pixel(colour.red(), colour.green(), colour.blue());
}

bool AreClose(const YDRGBA32i& x, const YDRGBA32i& y, int levels)
{
    return std::abs(x.r - y.r) <= levels && std::abs(x.g - y.g) <= levels && std::abs(x.b - y.b) <= levels;
}

QByteArray Text(const YDRGBA32i& p) { return QByteArray::number(QRgb(p), 16); }

} // namespace

Q_DECLARE_METATYPE(Settings)
Q_DECLARE_METATYPE(YDRGBA32i)

class TestYDHueSaturationTransformation : public QObject
{
    Q_OBJECT

private slots:
    void NeutralSettingsAreTheIdentity();
    void TheRuleGivesTheColoursOfItsFormula_data();
    void TheRuleGivesTheColoursOfItsFormula();
    void TheWholeCubeIsWithinTheRoundings_data();
    void TheWholeCubeIsWithinTheRoundings();
    void TheWholeCubeIsWithinTheRoundingsForAnySettings();
    void ATurnedHueIsThatOfHsl();
    void AFullTurnIsNone();
    void GreysKeepTheirLevelWhateverHueAndSaturation();
    void SaturationChangesNeitherHueNorLightness();
    void SaturationRaisesNoiseInGreysByAtMostEightTimes();
    void SmoothRampsStaySmooth_data();
    void SmoothRampsStaySmooth();
    void AColorizedPictureHasTheColourOfHslAtItsLuma();
    void AlphaIsCarriedThrough();
    void SettingsOutsideCountAsTheNearestBound();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
    void RowsEqualPixelsForAnySettings();
    void AnEmptyRowIsNothingToDo();
};

void TestYDHueSaturationTransformation::NeutralSettingsAreTheIdentity()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(QRgb(Changed({}, pixel)), QRgb(pixel));
    std::minstd_rand random(1);
    for (const YDRGBA32i& pixel : KernelCheck::RandomRow(100000, random))
        QCOMPARE(QRgb(Changed({}, pixel)), QRgb(pixel));
}

void TestYDHueSaturationTransformation::TheRuleGivesTheColoursOfItsFormula_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<YDRGBA32i>("before");
    QTest::addColumn<YDRGBA32i>("after");
    const auto row = [](const char* name, const Settings& settings, const YDRGBA32i& before,
                        const YDRGBA32i& after) { QTest::newRow(name) << settings << before << after; };
    row("red turns to green", {120, 0, 0, false}, Pixel(255, 0, 0), Pixel(0, 255, 0));
    row("red turns to blue", {240, 0, 0, false}, Pixel(255, 0, 0), Pixel(0, 0, 255));
    row("yellow turns past red", {330, 0, 0, false}, Pixel(255, 255, 0), Pixel(255, 128, 0));
    row("channels change places", {120, 0, 0, false}, Pixel(200, 150, 100), Pixel(100, 200, 150));
    row("backwards", {-60, 0, 0, false}, Pixel(200, 150, 100), Pixel(200, 100, 150));
    // L 150, so 150 +- 25, 150
    row("half the saturation", {0, -50, 0, false}, Pixel(200, 150, 100), Pixel(175, 150, 125));
    row("no saturation", {0, -100, 0, false}, Pixel(200, 150, 100), Pixel(150, 150, 150));
    // C 100 of 510 - 300 = 210: 210 / (0.5 * 100 + 0.5 * 210) = 1.3548 times 50
    row("more saturation", {0, 50, 0, false}, Pixel(200, 150, 100), Pixel(218, 150, 82));
    row("full saturation", {0, 100, 0, false}, Pixel(200, 150, 100), Pixel(255, 150, 45));
    // 200 * 0.7, ...
    row("darker", {0, 0, -30, false}, Pixel(200, 150, 100), Pixel(140, 105, 70));
    // 200 + 55 * 0.2, 150 + 105 * 0.2, 100 + 155 * 0.2
    row("lighter", {0, 0, 20, false}, Pixel(200, 150, 100), Pixel(211, 171, 131));
    row("black", {77, 12, -100, false}, Pixel(200, 150, 100), Pixel(0, 0, 0));
    row("white", {77, 12, 100, false}, Pixel(200, 150, 100), Pixel(255, 255, 255));
    // half of 100 on both sides; hue 0: only red goes up
    row("colorized", {0, 0, 0, true}, Pixel(100, 100, 100), Pixel(150, 50, 50));
    // half of 255 - 200
    row("colorized above mid grey", {240, 0, 0, true}, Pixel(200, 200, 200), Pixel(173, 173, 228));
    row("colorized without saturation", {90, -100, 0, true}, Pixel(255, 0, 0), Pixel(54, 54, 54));
    row("colorized and darker", {0, 100, -50, true}, Pixel(100, 100, 100), Pixel(100, 0, 0));
}

void TestYDHueSaturationTransformation::TheRuleGivesTheColoursOfItsFormula()
{
    QFETCH(Settings, settings);
    QFETCH(YDRGBA32i, before);
    QFETCH(YDRGBA32i, after);
    QCOMPARE(Text(Changed(settings, before)), Text(after));
}

void TestYDHueSaturationTransformation::TheWholeCubeIsWithinTheRoundings_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::newRow("hue") << Settings{211, 0, 0, false};
    QTest::newRow("weaker") << Settings{0, -37, 0, false};
    QTest::newRow("stronger") << Settings{0, 37, 0, false};
    QTest::newRow("full") << Settings{0, 100, 0, false};
    QTest::newRow("darker") << Settings{0, 0, -37, false};
    QTest::newRow("lighter") << Settings{0, 0, 37, false};
    QTest::newRow("all at once") << Settings{77, 88, 11, false};
    QTest::newRow("colorize") << Settings{33, 0, 0, true};
    QTest::newRow("colorize in full") << Settings{333, 100, -13, true};
}

void TestYDHueSaturationTransformation::TheWholeCubeIsWithinTheRoundings()
{
    QFETCH(Settings, settings);
    std::minstd_rand random(4);
    for (const KernelCheck::Row& row : {KernelCheck::ColourCube(), KernelCheck::RandomRow(100000, random)})
        for (const YDRGBA32i& before : row)
            QVERIFY2(Error(settings, before, Changed(settings, before)) <= Roundings, Text(before));
}

void TestYDHueSaturationTransformation::TheWholeCubeIsWithinTheRoundingsForAnySettings()
{
    std::minstd_rand random(5);
    for (int i = 0; i < 200; ++i) {
        const Settings settings = RandomSettings(random);
        for (const YDRGBA32i& before : KernelCheck::ColourCube())
            QVERIFY2(Error(settings, before, Changed(settings, before)) <= Roundings, Text(before));
    }
}

void TestYDHueSaturationTransformation::ATurnedHueIsThatOfHsl()
{
    for (int turn = 0; turn < 360; turn += 7) {
        for (int hue = 0; hue < 360; hue += 11) {
            const YDRGBA32i before = FromHsl(hue, 1.0, 0.5); // a level is a quarter of a degree
            const YDRGBA32i expected = FromHsl((hue + turn) % 360, 1.0, 0.5);
            QVERIFY2(AreClose(Changed({turn}, before), expected, 1), Text(before));
        }
    }
}

void TestYDHueSaturationTransformation::AFullTurnIsNone()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube()) {
        QCOMPARE(QRgb(Changed({360}, pixel)), QRgb(pixel));
        QCOMPARE(QRgb(Changed({-359}, pixel)), QRgb(Changed({1}, pixel)));
        QCOMPARE(QRgb(Changed({36000073}, pixel)), QRgb(Changed({73}, pixel)));
    }
}

void TestYDHueSaturationTransformation::GreysKeepTheirLevelWhateverHueAndSaturation()
{
    for (const int saturation : {-100, -1, 0, 1, 50, 99, 100})
        for (int v = 0; v < 256; ++v)
            QCOMPARE(QRgb(Changed({123, saturation}, Pixel(v, v, v))), QRgb(Pixel(v, v, v)));
}

void TestYDHueSaturationTransformation::SaturationChangesNeitherHueNorLightness()
{
    for (const int saturation : {-60, 30, 70, 100}) {
        for (const YDRGBA32i& before : KernelCheck::ColourCube()) {
            const YDRGBA32i after = Changed({0, saturation}, before);
            QVERIFY2(std::abs(Sum(after) - Sum(before)) <= 1, Text(before));
            QVERIFY2(saturation > 0 ? Chroma(after) >= Chroma(before) : Chroma(after) <= Chroma(before),
                     Text(before));
            // The middle channel stays where it is between the others, which is the hue.
            const int share = Chroma(before) * (after.g - std::min({after.r, after.g, after.b})) -
                              Chroma(after) * (before.g - std::min({before.r, before.g, before.b}));
            QVERIFY2(std::abs(share) <= 2 * Chroma(before), Text(before));
        }
    }
}

void TestYDHueSaturationTransformation::SaturationRaisesNoiseInGreysByAtMostEightTimes()
{
    QCOMPARE(Text(Changed({0, 100}, Pixel(129, 128, 127))), Text(Pixel(136, 128, 120)));
    QCOMPARE(Text(Changed({0, 100}, Pixel(144, 128, 112))), Text(Pixel(255, 128, 1)));
}

void TestYDHueSaturationTransformation::SmoothRampsStaySmooth_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<int>("widestStep");
    QTest::newRow("hue") << Settings{47, 0, 0, false} << 2;
    QTest::newRow("saturation") << Settings{0, 40, 0, false} << 3;
    QTest::newRow("darker") << Settings{0, 0, -40, false} << 1;
    QTest::newRow("lighter") << Settings{0, 0, 40, false} << 1;
    QTest::newRow("colorize") << Settings{210, 0, 0, true} << 2;
}

/// A sky: from deep blue to white, a level at a time.
void TestYDHueSaturationTransformation::SmoothRampsStaySmooth()
{
    QFETCH(Settings, settings);
    QFETCH(int, widestStep);
    YDRGBA32i last = Changed(settings, Pixel(40, 90, 200));
    for (int v = 0; v <= 215; ++v) {
        const YDRGBA32i next = Changed(settings, Pixel(40 + v, 90 + v * 165 / 215, 200 + v * 55 / 215));
        QVERIFY2(AreClose(last, next, widestStep), Text(next));
        last = next;
    }
    if (settings.lightness == 0)
        QCOMPARE(Text(last), Text(Pixel(255, 255, 255)));
}

void TestYDHueSaturationTransformation::AColorizedPictureHasTheColourOfHslAtItsLuma()
{
    for (const int saturation : {-100, -30, 0, 60, 100}) {
        for (int v = 0; v < 256; v += 5) {
            const YDRGBA32i expected = FromHsl(200, (saturation + 100) / 200.0, v / 255.0);
            QVERIFY(AreClose(Changed({200, saturation, 0, true}, Pixel(v, v, v)), expected, 1));
        }
    }
}

void TestYDHueSaturationTransformation::AlphaIsCarriedThrough()
{
    for (const Settings& settings :
         {Settings{10, -20, 30, false}, Settings{10, 20, 30, false}, Settings{10, 20, 30, true}})
        QCOMPARE(int(Changed(settings, Pixel(200, 150, 100, 40)).a), 40);
}

void TestYDHueSaturationTransformation::SettingsOutsideCountAsTheNearestBound()
{
    for (const bool colorize : {false, true}) {
        for (const YDRGBA32i& pixel : KernelCheck::ColourCube()) {
            QCOMPARE(QRgb(Changed({0, Highest, Lowest, colorize}, pixel)),
                     QRgb(Changed({0, 100, -100, colorize}, pixel)));
            QCOMPARE(QRgb(Changed({0, Lowest, 20, colorize}, pixel)),
                     QRgb(Changed({0, -100, 20, colorize}, pixel)));
            // 2147483647 = 5965232 * 360 + 127, and the lowest number is that less one, negative
            QCOMPARE(QRgb(Changed({Highest, 10, 0, colorize}, pixel)),
                     QRgb(Changed({127, 10, 0, colorize}, pixel)));
            QCOMPARE(QRgb(Changed({Lowest, 10, 0, colorize}, pixel)),
                     QRgb(Changed({360 - 128, 10, 0, colorize}, pixel)));
        }
    }
}

void TestYDHueSaturationTransformation::RowsEqualPixels_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::newRow("neutral") << Settings{};
    QTest::newRow("hue") << Settings{359, 0, 0, false};
    QTest::newRow("grey") << Settings{200, -100, 0, false};
    QTest::newRow("weaker") << Settings{77, -13, 21, false};
    QTest::newRow("stronger") << Settings{300, 1, -21, false};
    QTest::newRow("full") << Settings{0, 100, 0, false};
    QTest::newRow("full and black") << Settings{1, 100, -100, false};
    QTest::newRow("colorize") << Settings{33, 0, 0, true};
    QTest::newRow("colorize in full") << Settings{240, 100, 13, true};
}

void TestYDHueSaturationTransformation::RowsEqualPixels()
{
    QFETCH(Settings, settings);
    const YDHueSaturationTransformation rule(settings.hue, settings.saturation, settings.lightness,
                                             settings.colorize);
    QCOMPARE(KernelCheck::Difference(VectorKernels::HueSaturationRow, rule), QString());
}

void TestYDHueSaturationTransformation::RowsEqualPixelsForAnySettings()
{
    std::minstd_rand random(3);
    const KernelCheck::Row pixels = KernelCheck::RandomRow(5000, random);
    for (int i = 0; i < 200; ++i) {
        const Settings settings = RandomSettings(random);
        const YDHueSaturationTransformation rule(settings.hue, settings.saturation, settings.lightness,
                                                 settings.colorize);
        for (const qint64 target : KernelCheck::Targets()) {
            const KernelCheck::Restriction restriction(target);
            QCOMPARE(KernelCheck::RowDifference(rule, pixels, 0, int(pixels.size())), QString());
        }
    }
}

void TestYDHueSaturationTransformation::AnEmptyRowIsNothingToDo()
{
    YDRGBA32i pixel = Pixel(200, 150, 100);
    YDHueSaturationTransformation(100, 0, 0, false).ProcessRow(&pixel, 0);
    QCOMPARE(Text(pixel), Text(Pixel(200, 150, 100)));
}

QTEST_APPLESS_MAIN(TestYDHueSaturationTransformation)
#include "tst_YDHueSaturationTransformation.moc"
