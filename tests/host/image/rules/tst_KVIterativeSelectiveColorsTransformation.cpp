#include "KernelCheck.h"
#include "image/KVIterativeSelectiveColorsTransformation.h"

#include <QTest>

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

Q_DECLARE_METATYPE(SelectiveParamsList)

namespace {

using Rule = SelectiveColorsRule;
using List = SelectiveParamsList;

constexpr int Ranges = 9;

List Of(Mode mode) // no change
{
    List list;
    list.mode = mode;
    return list;
}

List OneRange(Rule::Range range, const SelectiveParams& params, Mode mode)
{
    List list = Of(mode);
    list.targets[range] = params;
    return list;
}

List EveryRange(const SelectiveParams& params, Mode mode)
{
    List list = Of(mode);
    for (SelectiveParams& target : list.targets)
        target = params;
    return list;
}

/// Neighbouring ranges as far apart as they can be.
List Opposites(float percentage, Mode mode)
{
    List list = Of(mode);
    for (int i = 0; i < Ranges; ++i) {
        const float value = i % 2 == 0 ? percentage : -percentage;
        list.targets[i] = {value, -value, value, 0.0f};
    }
    return list;
}

List Random(unsigned seed, Mode mode)
{
    std::minstd_rand random(seed);
    const auto percentage = [&random] { return float(int(random() % 2001) - 1000) / 10.0f; };
    List list = Of(mode);
    for (SelectiveParams& params : list.targets)
        params = {percentage(), percentage(), percentage(), percentage()};
    return list;
}

YDRGBA32i Changed(const Rule& rule, YDRGBA32i pixel)
{
    rule(pixel);
    return pixel;
}

Rule RuleOf(const List& list) { return Rule(list.targets, list.mode); }

YDRGBA32i Changed(const List& list, const YDRGBA32i& pixel) { return Changed(RuleOf(list), pixel); }

/// How far a pixel belongs to each range, in 0..1, from the halves of the channels' scale.
std::array<double, Ranges> Membership(const YDRGBA32i& pixel)
{
    const double r = pixel.r / 255.0;
    const double g = pixel.g / 255.0;
    const double b = pixel.b / 255.0;
    const auto positive = [](double x) { return std::max(x, 0.0); };
    const double greatest = std::max({r, g, b});
    const double least = std::min({r, g, b});
    std::array<double, Ranges> share{
        positive(r - std::max(g, b)),  positive(std::min(r, g) - b),
        positive(g - std::max(r, b)),  positive(std::min(g, b) - r),
        positive(b - std::max(r, g)),  positive(std::min(r, b) - g),
        positive(2.0 * least - 1.0),   1.0 - std::abs(greatest - 0.5) - std::abs(least - 0.5),
        positive(1.0 - 2.0 * greatest)};
    return share;
}

/// The new ink in real numbers, in levels.
double ExactInk(const YDRGBA32i& pixel, int channel, float SelectiveParams::*ink, const List& list)
{
    const auto share = Membership(pixel);
    double sum = 0.0;
    for (int i = 0; i < Ranges; ++i)
        sum += share[std::size_t(i)] * (double(list.targets[i].*ink) + double(list.targets[i].black)) / 100.0;
    const double before = 255.0 - channel;
    const double after = before + sum * (list.mode == List::Relative ? before : 255.0);
    return std::clamp(after, 0.0, 255.0);
}

bool IsNear(const YDRGBA32i& before, const YDRGBA32i& after, const List& list)
{
    constexpr double Tolerance = 0.5 + 0.035; // the rounding, and that of the percentages
    return std::abs(255 - after.r - ExactInk(before, before.r, &SelectiveParams::cyan, list)) <= Tolerance &&
           std::abs(255 - after.g - ExactInk(before, before.g, &SelectiveParams::magenta, list)) <=
               Tolerance &&
           std::abs(255 - after.b - ExactInk(before, before.b, &SelectiveParams::yellow, list)) <= Tolerance;
}

QString Text(const YDRGBA32i& pixel) { return QString::number(QRgb(pixel), 16); }

void AddModes()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("relative") << int(List::Relative);
    QTest::newRow("absolute") << int(List::Absolute);
}

constexpr Rule::Range AllRanges[] = {Rule::Reds,     Rule::Yellows, Rule::Greens,   Rule::Cyans, Rule::Blues,
                                     Rule::Magentas, Rule::Whites,  Rule::Neutrals, Rule::Blacks};

} // namespace

class TestKVIterativeSelectiveColorsTransformation : public QObject
{
    Q_OBJECT

private slots:
    void ChangesInks_data();
    void ChangesInks();
    void ZeroChangesNoColourAtAll_data() { AddModes(); }
    void ZeroChangesNoColourAtAll();
    void ARangeLeavesOtherColoursAlone_data();
    void ARangeLeavesOtherColoursAlone();
    void WhitesAreLightAndBlacksAreDark();
    void NeutralsPeakAtMidGrey();
    void TheSameForAllRangesIsTheSameForAllColours();
    void IsWithinHalfALevelOfTheFormula_data() { AddModes(); }
    void IsWithinHalfALevelOfTheFormula();
    void HasNoSeams_data() { AddModes(); }
    void HasNoSeams();
    void MoreInkIsNeverLighter_data() { AddModes(); }
    void MoreInkIsNeverLighter();
    void GreysStayInOrderUpToHalf_data() { AddModes(); }
    void GreysStayInOrderUpToHalf();
    void ListsOfAnyLengthAreTaken();
    void ValuesAreBounded_data();
    void ValuesAreBounded();
    void OtherModesAreAbsolute();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
};

void TestKVIterativeSelectiveColorsTransformation::ChangesInks_data()
{
    QTest::addColumn<int>("range");
    QTest::addColumn<QVector<float>>("inks"); // cyan, magenta, yellow, black
    QTest::addColumn<int>("mode");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    const auto row = [](const char* name, Rule::Range range, const QVector<float>& inks, Mode mode,
                        QRgb before, QRgb after) {
        QTest::newRow(name) << int(range) << inks << int(mode) << before << after;
    };
    const Mode relative = List::Relative;
    const Mode absolute = List::Absolute;
    // 200, 60, 40 is red by 140 / 255; its cyan is 55, and 55 * 140 / 255 = 30.2.
    const QRgb brick = qRgba(200, 60, 40, 77);
    row("all the cyan of a red again", Rule::Reds, {100, 0, 0, 0}, relative, brick, qRgba(170, 60, 40, 77));
    row("all the cyan of a red away", Rule::Reds, {-100, 0, 0, 0}, relative, brick, qRgba(230, 60, 40, 77));
    // 140 * 50 % = 70
    row("half a cyan into a red", Rule::Reds, {50, 0, 0, 0}, absolute, brick, qRgba(130, 60, 40, 77));
    // The inks 55, 195 and 215 change by 140 / 255 * 20 %: 6.0, 21.4 and 23.6.
    row("black is all inks", Rule::Reds, {0, 0, 0, -20}, relative, brick, qRgba(206, 81, 64, 77));
    const QRgb red = qRgb(255, 0, 0);
    row("pure red has no cyan", Rule::Reds, {100, 0, 0, 0}, relative, red, red);
    row("pure red takes cyan", Rule::Reds, {100, 0, 0, 0}, absolute, red, qRgb(0, 0, 0));
    row("no less than none", Rule::Reds, {-100, 0, 0, -100}, absolute, red, qRgb(255, 255, 255));
    row("no more than full", Rule::Reds, {100, 100, 100, 100}, absolute, red, qRgb(0, 0, 0));
    // 200, 180, 40 is yellow by 140 / 255 and red by 20 / 255.
    const QRgb mustard = qRgb(200, 180, 40);
    row("half a yellow out of a yellow", Rule::Yellows, {0, 0, -50, 0}, absolute, mustard,
        qRgb(200, 180, 110));
    row("half a yellow out of its red", Rule::Reds, {0, 0, -50, 0}, absolute, mustard, qRgb(200, 180, 50));
    // 50, 150, 100 is green and cyan by 50 / 255 each; cyan and black are 50 % together.
    const QRgb jade = qRgb(50, 150, 100);
    row("cyan and black in greens", Rule::Greens, {30, 0, 0, 20}, absolute, jade, qRgb(25, 140, 90));
    row("cyan and black in cyans", Rule::Cyans, {30, 0, 0, 20}, absolute, jade, qRgb(25, 140, 90));
    // 60, 90, 200 is blue by 110 / 255: 22 levels; 120, 20, 150 magenta by 100 / 255: 20 levels.
    row("magenta in blues", Rule::Blues, {0, 20, 0, 0}, absolute, qRgb(60, 90, 200), qRgb(60, 68, 200));
    row("magenta in magentas", Rule::Magentas, {0, -20, 0, 0}, absolute, qRgb(120, 20, 150),
        qRgb(120, 40, 150));
    row("white takes black", Rule::Whites, {0, 0, 0, 100}, absolute, qRgb(255, 255, 255), qRgb(0, 0, 0));
    row("white has no ink", Rule::Whites, {99, 99, 99, 99}, relative, qRgb(255, 255, 255),
        qRgb(255, 255, 255));
    // 215, 225, 235 is white by 175 / 255: 40 * 175 / 255 = 27.5, of which 20 % are 5.5.
    row("ink of a light colour", Rule::Whites, {30, 0, 0, 0}, relative, qRgb(215, 225, 235),
        qRgb(207, 225, 235));
    // 128 is neutral by 254 / 255: 254 * 20 % = 50.8.
    row("a lighter mid grey", Rule::Neutrals, {0, 0, 0, -20}, absolute, qRgb(128, 128, 128),
        qRgb(179, 179, 179));
    // 40 is black by 175 / 255; 215 * 175 / 255 * 10 % = 14.8.
    row("a darker black", Rule::Blacks, {0, 0, 0, 10}, relative, qRgb(40, 40, 40), qRgb(25, 25, 25));
    row("a fraction of a per cent", Rule::Blacks, {0, 0, -2.5f, 0}, absolute, qRgb(0, 0, 0), qRgb(0, 0, 6));
}

void TestKVIterativeSelectiveColorsTransformation::ChangesInks()
{
    QFETCH(int, range);
    QFETCH(QVector<float>, inks);
    QFETCH(int, mode);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    const List list =
        OneRange(Rule::Range(range), {inks[0], inks[1], inks[2], inks[3]}, static_cast<Mode>(mode));
    YDRGBA32i pixel(before);
    KVIterativeSelectiveColorsTransformation transformation(list);
    transformation.SetProcessingBuffer(&pixel);
    transformation.ProcessPixel(0);
    QCOMPARE(Text(pixel), Text(after));
}

void TestKVIterativeSelectiveColorsTransformation::ZeroChangesNoColourAtAll()
{
    QFETCH(int, mode);
    const Rule rule = RuleOf(Of(static_cast<Mode>(mode)));
    for (QRgb color = 0; color < 0x01000000u; ++color)
        if (QRgb(Changed(rule, color)) != color)
            QCOMPARE(Text(Changed(rule, color)), Text(color));
}

void TestKVIterativeSelectiveColorsTransformation::ARangeLeavesOtherColoursAlone_data()
{
    QTest::addColumn<int>("range");
    QTest::addColumn<QRgb>("pure");
    QTest::newRow("reds") << int(Rule::Reds) << qRgb(255, 0, 0);
    QTest::newRow("yellows") << int(Rule::Yellows) << qRgb(255, 255, 0);
    QTest::newRow("greens") << int(Rule::Greens) << qRgb(0, 255, 0);
    QTest::newRow("cyans") << int(Rule::Cyans) << qRgb(0, 255, 255);
    QTest::newRow("blues") << int(Rule::Blues) << qRgb(0, 0, 255);
    QTest::newRow("magentas") << int(Rule::Magentas) << qRgb(255, 0, 255);
    QTest::newRow("whites") << int(Rule::Whites) << qRgb(255, 255, 255);
    QTest::newRow("blacks") << int(Rule::Blacks) << qRgb(0, 0, 0);
}

void TestKVIterativeSelectiveColorsTransformation::ARangeLeavesOtherColoursAlone()
{
    QFETCH(int, range);
    QFETCH(QRgb, pure);
    for (const float percentage : {-60.0f, 60.0f}) {
        const SelectiveParams params{percentage, percentage, percentage, 0.0f};
        const bool isFull = qRed(pure) + qGreen(pure) + qBlue(pure) == 3 * 255
                                ? percentage < 0.0f
                                : pure == qRgb(0, 0, 0) && percentage > 0.0f;
        for (const Rule::Range other : AllRanges) {
            const QRgb after = Changed(OneRange(other, params, List::Absolute), pure);
            QCOMPARE(after != pure, int(other) == range && !isFull);
        }
    }
}

void TestKVIterativeSelectiveColorsTransformation::WhitesAreLightAndBlacksAreDark()
{
    const SelectiveParams ink{0.0f, 0.0f, 0.0f, 100.0f};
    const SelectiveParams light{0.0f, 0.0f, 0.0f, -100.0f};
    const Rule whites = RuleOf(OneRange(Rule::Whites, ink, List::Absolute));
    const Rule blacks = RuleOf(OneRange(Rule::Blacks, light, List::Absolute));
    for (int v = 0; v < 256; ++v) {
        const YDRGBA32i grey{quint8(v), quint8(v), quint8(v), 255};
        const int white = v < 128 ? 0 : 2 * v - 255;
        const int black = v < 128 ? 255 - 2 * v : 0;
        QCOMPARE(int(Changed(whites, grey).g), std::max(v - white, 0));
        QCOMPARE(int(Changed(blacks, grey).g), std::min(v + black, 255));
    }
    QCOMPARE(Text(Changed(whites, qRgb(255, 255, 127))), Text(qRgb(255, 255, 127)));
    QCOMPARE(Text(Changed(blacks, qRgb(128, 0, 0))), Text(qRgb(128, 0, 0)));
}

void TestKVIterativeSelectiveColorsTransformation::NeutralsPeakAtMidGrey()
{
    const Rule rule = RuleOf(OneRange(Rule::Neutrals, {0.0f, 0.0f, 0.0f, 20.0f}, List::Absolute));
    const auto darker = [&rule](int v) {
        return v - Changed(rule, YDRGBA32i(quint8(v), quint8(v), quint8(v), 255)).g;
    };
    QCOMPARE(darker(0), 0);
    QCOMPARE(darker(64), 26); // 128 * 20 %
    QCOMPARE(darker(127), 51);
    QCOMPARE(darker(128), 51);
    QCOMPARE(darker(191), 26);
    QCOMPARE(darker(255), 0);
    for (int v = 1; v < 256; ++v)
        QVERIFY(v < 128 ? darker(v) >= darker(v - 1) : darker(v) <= darker(v - 1));
    // 178, 128, 78 lies as far from grey as from full colour by 100 / 255: 155 * 20 % = 31.
    QCOMPARE(Text(Changed(rule, qRgb(178, 128, 78))), Text(qRgb(147, 97, 47)));
}

void TestKVIterativeSelectiveColorsTransformation::TheSameForAllRangesIsTheSameForAllColours()
{
    const Rule rule = RuleOf(EveryRange({0.0f, 0.0f, 20.0f, 20.0f}, List::Absolute));
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube()) {
        const YDRGBA32i after = Changed(rule, pixel);
        QCOMPARE(int(after.r), std::max(pixel.r - 51, 0));  // 20 %
        QCOMPARE(int(after.b), std::max(pixel.b - 102, 0)); // 40 %
        QCOMPARE(int(after.a), int(pixel.a));
    }
}

void TestKVIterativeSelectiveColorsTransformation::IsWithinHalfALevelOfTheFormula()
{
    QFETCH(int, mode);
    std::minstd_rand random(5);
    const KernelCheck::Row pixels = KernelCheck::RandomRow(3000, random);
    for (unsigned seed = 1; seed <= 30; ++seed) {
        const List list = Random(seed, static_cast<Mode>(mode));
        const Rule rule = RuleOf(list);
        for (const KernelCheck::Row& row : {KernelCheck::ColourCube(), pixels})
            for (const YDRGBA32i& pixel : row)
                QVERIFY2(IsNear(pixel, Changed(rule, pixel), list), qPrintable(Text(pixel)));
    }
}

/// A level more in one channel moves the weights by 4 in all; at 100 per cent that are 4 levels, one more is
/// the channel's own, one what the ink there is adds in the relative mode, and one is the rounding.
void TestKVIterativeSelectiveColorsTransformation::HasNoSeams()
{
    QFETCH(int, mode);
    constexpr int Most = 7;
    const Rule rule = RuleOf(Opposites(100.0f, static_cast<Mode>(mode)));
    const auto distance = [](const YDRGBA32i& x, const YDRGBA32i& y) {
        return std::max({std::abs(x.r - y.r), std::abs(x.g - y.g), std::abs(x.b - y.b)});
    };
    for (QRgb color = 0; color < 0x01000000u; color += 3) {
        const YDRGBA32i here = Changed(rule, color);
        for (const QRgb step : {0x000001u, 0x000100u, 0x010000u})
            if ((color & step * 0xff) != step * 0xff && distance(Changed(rule, color + step), here) > Most)
                QFAIL(qPrintable(Text(color)));
    }
}

void TestKVIterativeSelectiveColorsTransformation::MoreInkIsNeverLighter()
{
    QFETCH(int, mode);
    for (const Rule::Range range : AllRanges) {
        std::vector<Rule> rules;
        for (int percentage = -100; percentage <= 100; percentage += 20)
            rules.push_back(
                RuleOf(OneRange(range, {0.0f, float(percentage), 0.0f, 0.0f}, static_cast<Mode>(mode))));
        for (const YDRGBA32i& pixel : KernelCheck::ColourCube()) {
            quint8 before = 255;
            for (const Rule& rule : rules) {
                const YDRGBA32i after = Changed(rule, pixel);
                QVERIFY(after.g <= before);
                QCOMPARE(after.r, pixel.r);
                QCOMPARE(after.b, pixel.b);
                before = after.g;
            }
        }
    }
}

void TestKVIterativeSelectiveColorsTransformation::GreysStayInOrderUpToHalf()
{
    QFETCH(int, mode);
    for (const Rule::Range range : {Rule::Whites, Rule::Neutrals}) {
        for (const float percentage : {-50.0f, -25.0f, 25.0f, 50.0f}) {
            const Rule rule =
                RuleOf(OneRange(range, {0.0f, 0.0f, 0.0f, percentage}, static_cast<Mode>(mode)));
            for (int v = 1; v < 256; ++v) {
                const YDRGBA32i darker = Changed(rule, qRgb(v - 1, v - 1, v - 1));
                const YDRGBA32i lighter = Changed(rule, qRgb(v, v, v));
                QVERIFY(darker.g <= lighter.g);
            }
        }
    }
}

void TestKVIterativeSelectiveColorsTransformation::ListsOfAnyLengthAreTaken()
{
    const List full = Random(3, List::Absolute);
    const QRgb brick = qRgb(200, 60, 40);
    const QRgb dark = qRgb(20, 30, 40);
    QList<SelectiveParams> reds{full.targets[0]};
    const Rule shortRule(reds, List::Absolute);
    QCOMPARE(Text(Changed(shortRule, brick)),
             Text(Changed(OneRange(Rule::Reds, full.targets[0], List::Absolute), brick)));
    QCOMPARE(Text(Changed(shortRule, dark)), Text(dark));
    QCOMPARE(Text(Changed(Rule({}, List::Relative), brick)), Text(brick));
    QList<SelectiveParams> longer = full.targets;
    for (int i = 0; i < 1000; ++i)
        longer.append({100.0f, 100.0f, 100.0f, 100.0f});
    QCOMPARE(Text(Changed(Rule(longer, List::Absolute), dark)), Text(Changed(full, dark)));
}

void TestKVIterativeSelectiveColorsTransformation::ValuesAreBounded_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<float>("same");
    QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << 0.0f;
    QTest::newRow("infinite") << std::numeric_limits<float>::infinity() << 100.0f;
    QTest::newRow("infinite below 0") << -std::numeric_limits<float>::infinity() << -100.0f;
    QTest::newRow("huge") << std::numeric_limits<float>::max() << 100.0f;
    QTest::newRow("huge below 0") << std::numeric_limits<float>::lowest() << -100.0f;
    QTest::newRow("just above") << 100.5f << 100.0f;
}

void TestKVIterativeSelectiveColorsTransformation::ValuesAreBounded()
{
    QFETCH(float, value);
    QFETCH(float, same);
    for (const Mode mode : {List::Relative, List::Absolute}) {
        const Rule actual = RuleOf(EveryRange({value, value, value, 0.0f}, mode));
        const Rule expected = RuleOf(EveryRange({same, same, same, 0.0f}, mode));
        const Rule actualBlack = RuleOf(EveryRange({0.0f, 0.0f, 0.0f, value}, mode));
        for (const YDRGBA32i& pixel : KernelCheck::ColourCube()) {
            QCOMPARE(Text(Changed(actual, pixel)), Text(Changed(expected, pixel)));
            QCOMPARE(Text(Changed(actualBlack, pixel)), Text(Changed(expected, pixel)));
        }
    }
}

void TestKVIterativeSelectiveColorsTransformation::OtherModesAreAbsolute()
{
    const List absolute = Random(4, List::Absolute);
    for (const int number : {2, -1, std::numeric_limits<int>::max()}) {
        List other = absolute;
        other.mode = static_cast<Mode>(number);
        QCOMPARE(Text(Changed(other, qRgb(90, 120, 200))), Text(Changed(absolute, qRgb(90, 120, 200))));
    }
}

void TestKVIterativeSelectiveColorsTransformation::RowsEqualPixels_data()
{
    QTest::addColumn<List>("list");
    for (const Mode mode : {List::Relative, List::Absolute}) {
        const QByteArray name = mode == List::Relative ? "relative, " : "absolute, ";
        QTest::newRow(name + "none") << Of(mode);
        QTest::newRow(name + "full") << EveryRange({100.0f, 100.0f, 100.0f, 100.0f}, mode);
        QTest::newRow(name + "empty") << EveryRange({-100.0f, -100.0f, -100.0f, -100.0f}, mode);
        QTest::newRow(name + "opposites") << Opposites(100.0f, mode);
        List neutrals = EveryRange({100.0f, 100.0f, 100.0f, 100.0f}, mode);
        neutrals.targets[Rule::Neutrals] = {-100.0f, -100.0f, -100.0f, -100.0f};
        QTest::newRow(name + "neutrals apart") << neutrals;
        for (const unsigned seed : {11u, 12u, 13u})
            QTest::newRow(name + "random " + QByteArray::number(seed)) << Random(seed, mode);
    }
}

void TestKVIterativeSelectiveColorsTransformation::RowsEqualPixels()
{
    QFETCH(List, list);
    QCOMPARE(KernelCheck::Difference(VectorKernels::SelectiveColorsRow,
                                     KVIterativeSelectiveColorsTransformation(list)),
             QString());
}

QTEST_GUILESS_MAIN(TestKVIterativeSelectiveColorsTransformation)
#include "tst_KVIterativeSelectiveColorsTransformation.moc"
