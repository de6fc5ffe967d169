#include "KernelCheck.h"
#include "image/YDIterativeColorBalanceTransformation.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr double Roundings = 0.6; // levels: half of one, and what was rounded or cut before

/// Each for shadows, midtones and highlights.
struct Settings
{
    int cyanRed[3] = {};
    int magentaGreen[3] = {};
    int yellowBlue[3] = {};
};

YDIterativeColorBalanceTransformation RuleFor(const Settings& settings)
{
    return {settings.cyanRed, settings.magentaGreen, settings.yellowBlue};
}

YDRGBA32i Changed(const Settings& settings, YDRGBA32i pixel)
{
    YDIterativeColorBalanceTransformation rule = RuleFor(settings);
    rule.SetProcessingBuffer(&pixel);
    rule.ProcessPixel(0);
    return pixel;
}

YDRGBA32i Pixel(int r, int g, int b, int a = 255) { return {quint8(b), quint8(g), quint8(r), quint8(a)}; }

/// The channel under the formula, in real numbers; `tone` is the pixel's luma in 0..1.
double ByFormula(int channel, const int* settings, double tone)
{
    const double u = std::abs(2 * tone - 1);
    const double end = u * u * (3 - 2 * u);
    const double shift = settings[1] * (1 - end) + (tone < 0.5 ? settings[0] : settings[2]) * end;
    const double used = (shift < 0 ? 255 - channel : channel) / 255.0;
    return channel + shift * (1 - used * used);
}

/// How far the furthest channel of the changed pixel lies from the formula.
double Error(const Settings& settings, const YDRGBA32i& before, const YDRGBA32i& after)
{
    const double tone = (0.2126 * before.r + 0.7152 * before.g + 0.0722 * before.b) / 255;
    return std::max({std::abs(after.r - ByFormula(before.r, settings.cyanRed, tone)),
                     std::abs(after.g - ByFormula(before.g, settings.magentaGreen, tone)),
                     std::abs(after.b - ByFormula(before.b, settings.yellowBlue, tone))});
}

Settings RandomSettings(std::minstd_rand& random)
{
    Settings settings;
    for (int* const axis : {settings.cyanRed, settings.magentaGreen, settings.yellowBlue})
        for (int tone = 0; tone < 3; ++tone)
            axis[tone] = int(random() >> 4) % 201 - 100;
    return settings;
}

QByteArray Text(const YDRGBA32i& p) { return QByteArray::number(QRgb(p), 16); }

} // namespace

Q_DECLARE_METATYPE(Settings)
Q_DECLARE_METATYPE(YDRGBA32i)

class TestYDIterativeColorBalanceTransformation : public QObject
{
    Q_OBJECT

private slots:
    void NeutralSettingsAreTheIdentity();
    void TheRuleGivesTheColoursOfItsFormula_data();
    void TheRuleGivesTheColoursOfItsFormula();
    void TheWholeCubeIsWithinTheRoundings_data();
    void TheWholeCubeIsWithinTheRoundings();
    void TheWholeCubeIsWithinTheRoundingsForAnySettings();
    void WhiteAndBlackAreShiftedByTheirRangeAlone();
    void WeightsSumToOneAtEveryTone();
    void ShadowsLeaveBrightTonesAloneAndHighlightsDarkOnes();
    void EachAxisMovesItsOwnChannel();
    void NothingIsClipped();
    void SmoothRampsStaySmooth();
    void AlphaIsCarriedThrough();
    void SettingsOutsideCountAsTheNearestBound();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
    void RowsEqualPixelsForAnySettings();
};

void TestYDIterativeColorBalanceTransformation::NeutralSettingsAreTheIdentity()
{
    std::minstd_rand random(1);
    for (const KernelCheck::Row& row : {KernelCheck::ColourCube(), KernelCheck::RandomRow(100000, random)})
        for (const YDRGBA32i& pixel : row)
            QCOMPARE(QRgb(Changed({}, pixel)), QRgb(pixel));
}

void TestYDIterativeColorBalanceTransformation::TheRuleGivesTheColoursOfItsFormula_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<YDRGBA32i>("before");
    QTest::addColumn<YDRGBA32i>("after");
    const auto row = [](const char* name, const Settings& settings, const YDRGBA32i& before,
                        const YDRGBA32i& after) { QTest::newRow(name) << settings << before << after; };
    // 50 (1 - (127 / 255)^2) = 37.6, 50 (1 - (128 / 255)^2) = 37.4
    row("midtones, red", {{0, 50, 0}}, Pixel(127, 127, 127), Pixel(165, 127, 127));
    row("midtones, cyan", {{0, -50, 0}}, Pixel(127, 127, 127), Pixel(90, 127, 127));
    row("midtones leave black", {{0, 100, 0}}, Pixel(0, 0, 0), Pixel(0, 0, 0));
    row("midtones leave white", {{0, 100, 0}, {0, -100, 0}}, Pixel(255, 255, 255), Pixel(255, 255, 255));
    row("shadows lift black", {{0, 0, 0}, {0, 0, 0}, {30, 0, 0}}, Pixel(0, 0, 0), Pixel(0, 0, 30));
    row("shadows leave mid grey", {{100, 0, 0}}, Pixel(128, 128, 128), Pixel(128, 128, 128));
    row("highlights tint white", {{0, 0, 0}, {0, 0, 0}, {0, 0, -30}}, Pixel(255, 255, 255),
        Pixel(255, 255, 225));
    row("highlights cannot pass white", {{0, 0, 100}}, Pixel(255, 255, 255), Pixel(255, 255, 255));
    // u = 0.5, weight 0.5: 20 (1 - (191 / 255)^2) = 8.8, 20 (1 - (64 / 255)^2) = 18.7
    row("half a highlight", {{0, 0, 40}, {0, 0, -40}}, Pixel(191, 191, 191), Pixel(200, 172, 191));
}

void TestYDIterativeColorBalanceTransformation::TheRuleGivesTheColoursOfItsFormula()
{
    QFETCH(Settings, settings);
    QFETCH(YDRGBA32i, before);
    QFETCH(YDRGBA32i, after);
    QCOMPARE(Text(Changed(settings, before)), Text(after));
}

void TestYDIterativeColorBalanceTransformation::TheWholeCubeIsWithinTheRoundings_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::newRow("moderate") << Settings{{10, -20, 30}, {0, 15, -5}, {-20, 0, 20}};
    QTest::newRow("ends against the middle") << Settings{{100, -100, 100}, {-100, 100, -100}, {100, -100, 0}};
    QTest::newRow("ends against each other") << Settings{{-100, 0, 100}, {100, 0, -100}, {-100, 100, 100}};
    QTest::newRow("one range an axis") << Settings{{100, 0, 0}, {0, 100, 0}, {0, 0, 100}};
    QTest::newRow("the same, negative") << Settings{{0, 0, -100}, {-100, 0, 0}, {0, -100, 0}};
}

void TestYDIterativeColorBalanceTransformation::TheWholeCubeIsWithinTheRoundings()
{
    QFETCH(Settings, settings);
    std::minstd_rand random(4);
    for (const KernelCheck::Row& row : {KernelCheck::ColourCube(), KernelCheck::RandomRow(100000, random)})
        for (const YDRGBA32i& before : row)
            QVERIFY2(Error(settings, before, Changed(settings, before)) <= Roundings, Text(before));
}

void TestYDIterativeColorBalanceTransformation::TheWholeCubeIsWithinTheRoundingsForAnySettings()
{
    std::minstd_rand random(5);
    for (int i = 0; i < 200; ++i) {
        const Settings settings = RandomSettings(random);
        for (const YDRGBA32i& before : KernelCheck::ColourCube())
            QVERIFY2(Error(settings, before, Changed(settings, before)) <= Roundings, Text(before));
    }
}

/// There the weight of the midtones is nothing at all.
void TestYDIterativeColorBalanceTransformation::WhiteAndBlackAreShiftedByTheirRangeAlone()
{
    for (int setting = 0; setting <= 100; ++setting) {
        const Settings settings{{setting, -100, 0}, {0, 100, -setting}, {setting, 100, -setting}};
        QCOMPARE(Text(Changed(settings, Pixel(0, 0, 0))), Text(Pixel(setting, 0, setting)));
        QCOMPARE(Text(Changed(settings, Pixel(255, 255, 255))),
                 Text(Pixel(255, 255 - setting, 255 - setting)));
    }
}

void TestYDIterativeColorBalanceTransformation::WeightsSumToOneAtEveryTone()
{
    for (const int setting : {-100, -30, 10, 77}) {
        for (int v = 0; v < 256; ++v) {
            const int used = setting < 0 ? 255 - v : v;
            const int expected = v + qRound(setting * (1.0 - used * used / 65025.0));
            const YDRGBA32i after = Changed({{setting, setting, setting}}, Pixel(v, v, v));
            QVERIFY2(std::abs(after.r - expected) <= 1, Text(after));
        }
    }
}

void TestYDIterativeColorBalanceTransformation::ShadowsLeaveBrightTonesAloneAndHighlightsDarkOnes()
{
    for (int v = 0; v < 128; ++v) {
        QCOMPARE(Text(Changed({{0, 0, 100}, {0, 0, -100}}, Pixel(v, v, v))), Text(Pixel(v, v, v)));
        const int bright = 255 - v;
        QCOMPARE(Text(Changed({{100, 0, 0}, {-100, 0, 0}}, Pixel(bright, bright, bright))),
                 Text(Pixel(bright, bright, bright)));
    }
}

void TestYDIterativeColorBalanceTransformation::EachAxisMovesItsOwnChannel()
{
    const YDRGBA32i before = Pixel(120, 130, 140);
    const auto moved = [&before](const YDRGBA32i& after) {
        return QList<bool>{after.r > before.r, after.g > before.g, after.b > before.b,
                           after.r < before.r, after.g < before.g, after.b < before.b};
    };
    QCOMPARE(moved(Changed({{0, 40, 0}}, before)), (QList<bool>{true, false, false, false, false, false}));
    QCOMPARE(moved(Changed({{}, {0, 40, 0}}, before)),
             (QList<bool>{false, true, false, false, false, false}));
    QCOMPARE(moved(Changed({{}, {}, {0, 40, 0}}, before)),
             (QList<bool>{false, false, true, false, false, false}));
    QCOMPARE(moved(Changed({{0, -40, 0}}, before)), (QList<bool>{false, false, false, true, false, false}));
    QCOMPARE(moved(Changed({{}, {0, -40, 0}}, before)),
             (QList<bool>{false, false, false, false, true, false}));
    QCOMPARE(moved(Changed({{}, {}, {0, -40, 0}}, before)),
             (QList<bool>{false, false, false, false, false, true}));
}

/// Two levels of a channel that differ by ten still differ, up to the end that both are shifted to.
void TestYDIterativeColorBalanceTransformation::NothingIsClipped()
{
    for (const int setting : {-100, 100}) {
        const Settings settings{{setting, setting, setting}};
        for (int v = 10; v < 256; ++v) {
            const YDRGBA32i lower = Changed(settings, Pixel(v - 10, 128, 128));
            const YDRGBA32i higher = Changed(settings, Pixel(v, 128, 128));
            QVERIFY2(higher.r > lower.r, Text(higher));
        }
    }
}

void TestYDIterativeColorBalanceTransformation::SmoothRampsStaySmooth()
{
    const Settings settings{{30, -20, 10}, {-30, 0, 30}, {0, 30, -30}};
    YDRGBA32i last = Changed(settings, Pixel(0, 0, 0));
    for (int v = 1; v <= 255; ++v) {
        const YDRGBA32i next = Changed(settings, Pixel(v, v, v));
        for (const int step : {next.r - last.r, next.g - last.g, next.b - last.b})
            QVERIFY2(step >= 0 && step <= 2, Text(next));
        last = next;
    }
}

void TestYDIterativeColorBalanceTransformation::AlphaIsCarriedThrough()
{
    QCOMPARE(int(Changed({{10, 20, 30}}, Pixel(200, 150, 100, 40)).a), 40);
}

void TestYDIterativeColorBalanceTransformation::SettingsOutsideCountAsTheNearestBound()
{
    const Settings wild{{Lowest, Highest, Lowest}, {Highest, Lowest, Highest}, {101, -101, Highest}};
    const Settings bounds{{-100, 100, -100}, {100, -100, 100}, {100, -100, 100}};
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(QRgb(Changed(wild, pixel)), QRgb(Changed(bounds, pixel)));
}

void TestYDIterativeColorBalanceTransformation::RowsEqualPixels_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::newRow("neutral") << Settings{};
    QTest::newRow("moderate") << Settings{{10, -20, 30}, {0, 15, -5}, {-20, 0, 20}};
    QTest::newRow("most") << Settings{{100, 100, 100}, {100, 100, 100}, {100, 100, 100}};
    QTest::newRow("least") << Settings{{-100, -100, -100}, {-100, -100, -100}, {-100, -100, -100}};
    QTest::newRow("against each other") << Settings{{100, -100, 100}, {-100, 100, -100}, {-100, -100, 100}};
}

void TestYDIterativeColorBalanceTransformation::RowsEqualPixels()
{
    QFETCH(Settings, settings);
    QCOMPARE(KernelCheck::Difference(VectorKernels::ColorBalanceRow, RuleFor(settings)), QString());
}

void TestYDIterativeColorBalanceTransformation::RowsEqualPixelsForAnySettings()
{
    std::minstd_rand random(3);
    const KernelCheck::Row pixels = KernelCheck::RandomRow(5000, random);
    for (int i = 0; i < 200; ++i) {
        const Settings settings = RandomSettings(random);
        for (const qint64 target : KernelCheck::Targets()) {
            const KernelCheck::Restriction restriction(target);
            QCOMPARE(KernelCheck::RowDifference(RuleFor(settings), pixels, 0, int(pixels.size())), QString());
        }
    }
}

QTEST_APPLESS_MAIN(TestYDIterativeColorBalanceTransformation)
#include "tst_YDIterativeColorBalanceTransformation.moc"
