#include "KernelCheck.h"
#include "image/OverlayRule.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

using Mode = KVCompositionMode;
using KernelCheck::Row;

/// B(Cb, Cs) of "Compositing and Blending Level 1", section 10, in the words of that page.
double Blended(Mode mode, double cb, double cs)
{
    switch (mode) {
    case Mode::Multiply:
        return cb * cs;
    case Mode::Screen:
        return 1 - (1 - cb) * (1 - cs);
    case Mode::Overlay:
        return Blended(Mode::HardLight, cs, cb);
    case Mode::Darken:
        return qMin(cb, cs);
    case Mode::Lighten:
        return qMax(cb, cs);
    case Mode::ColorDodge:
        return cb == 0 ? 0 : cs == 1 ? 1 : qMin(1.0, cb / (1 - cs));
    case Mode::ColorBurn:
        return cb == 1 ? 1 : cs == 0 ? 0 : 1 - qMin(1.0, (1 - cb) / cs);
    case Mode::HardLight:
        return cs <= 0.5 ? cb * 2 * cs : Blended(Mode::Screen, cb, 2 * cs - 1);
    case Mode::SoftLight: {
        const double d = cb <= 0.25 ? ((16 * cb - 12) * cb + 4) * cb : std::sqrt(cb);
        return cs <= 0.5 ? cb - (1 - 2 * cs) * cb * (1 - cb) : cb + (2 * cs - 1) * (d - cb);
    }
    case Mode::Difference:
        return std::abs(cb - cs);
    case Mode::Exclusion:
        return cb + cs - 2 * cb * cs;
    case Mode::Addition:
    case Mode::Normal:
        break;
    }
    return cs;
}

struct Result
{
    double channel[3];
    double alpha;
};

/// Sections 5 and 9.1.14 of the same, in levels.
Result Composed(Mode mode, const YDRGBA32i& over, const YDRGBA32i& under, double opacity)
{
    const double as = over.a / 255.0 * opacity;
    const double ab = under.a / 255.0;
    const bool adds = mode == Mode::Addition;
    const double ao = adds ? qMin(1.0, as + ab) : as + ab * (1 - as);
    const auto channel = [&](int source, int backdrop) {
        const double cs = source / 255.0;
        const double cb = backdrop / 255.0;
        const double mixed = (1 - ab) * cs + ab * Blended(mode, cb, cs);
        const double co = adds ? qMin(1.0, as * cs + ab * cb) : as * mixed + (1 - as) * ab * cb;
        return co / ao * 255;
    };
    return {{channel(over.b, under.b), channel(over.g, under.g), channel(over.r, under.r)}, ao * 255};
}

bool IsNearest(int level, double exact) { return std::abs(level - exact) <= 0.5 + 1e-3; }

void AddModes()
{
    QTest::addColumn<Mode>("mode");
    QTest::newRow("Normal") << Mode::Normal;
    QTest::newRow("Multiply") << Mode::Multiply;
    QTest::newRow("Screen") << Mode::Screen;
    QTest::newRow("Overlay") << Mode::Overlay;
    QTest::newRow("Difference") << Mode::Difference;
    QTest::newRow("Exclusion") << Mode::Exclusion;
    QTest::newRow("Lighten colors") << Mode::Lighten;
    QTest::newRow("Darken colors") << Mode::Darken;
    QTest::newRow("Soft light") << Mode::SoftLight;
    QTest::newRow("Hard light") << Mode::HardLight;
    QTest::newRow("Color dodge") << Mode::ColorDodge;
    QTest::newRow("Color burn") << Mode::ColorBurn;
    QTest::newRow("Addition") << Mode::Addition;
}

YDRGBA32i Grey(int level, int alpha = 255)
{
    return {quint8(level), quint8(level), quint8(level), quint8(alpha)};
}

} // namespace

Q_DECLARE_METATYPE(Mode)

class TestOverlayRule : public QObject
{
    Q_OBJECT

private slots:
    void MixesOpaqueColours_data();
    void MixesOpaqueColours();
    void EveryOpaquePairIsRoundedToTheNearestLevel_data();
    void EveryOpaquePairIsRoundedToTheNearestLevel();
    void TranslucentPixelsAreComposedByTheirAlpha_data();
    void TranslucentPixelsAreComposedByTheirAlpha();
    void TheNumbersAreThoseOfAPainter_data();
    void TheNumbersAreThoseOfAPainter();
    void WhatCoversNothingLeavesEveryByte_data();
    void WhatCoversNothingLeavesEveryByte();
    void ANumberThatIsNoModeIsNormal_data();
    void ANumberThatIsNoModeIsNormal();
    void OpacityOutOfRangeCountsAsTheNearestBound();
    void RowsEqualPixels_data();
    void RowsEqualPixels();
};

void TestOverlayRule::MixesOpaqueColours_data()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<int>("over");
    QTest::addColumn<int>("under");
    QTest::addColumn<int>("expected");
    QTest::newRow("Normal") << Mode::Normal << 200 << 10 << 200;
    QTest::newRow("Multiply: 102 * 100 / 255") << Mode::Multiply << 102 << 100 << 40;
    QTest::newRow("Screen: 102 + 100 - 40") << Mode::Screen << 102 << 100 << 162;
    QTest::newRow("Overlay, dark picture: 2 * 51 * 100 / 255") << Mode::Overlay << 100 << 51 << 40;
    QTest::newRow("Overlay, bright picture: 255 - 2 * 51 * 155 / 255") << Mode::Overlay << 100 << 204 << 193;
    QTest::newRow("Hard light, dark stamp") << Mode::HardLight << 51 << 100 << 40;
    QTest::newRow("Hard light, bright stamp") << Mode::HardLight << 204 << 100 << 193;
    QTest::newRow("Darken") << Mode::Darken << 70 << 80 << 70;
    QTest::newRow("Lighten") << Mode::Lighten << 70 << 80 << 80;
    QTest::newRow("Color dodge: 60 / (204 / 255)") << Mode::ColorDodge << 51 << 60 << 75;
    QTest::newRow("Color dodge, white stamp") << Mode::ColorDodge << 255 << 1 << 255;
    QTest::newRow("Color dodge, white stamp on black") << Mode::ColorDodge << 255 << 0 << 0;
    QTest::newRow("Color burn: 255 - 50 / (102 / 255)") << Mode::ColorBurn << 102 << 205 << 130;
    QTest::newRow("Color burn, black stamp") << Mode::ColorBurn << 0 << 254 << 0;
    QTest::newRow("Color burn, black stamp on white") << Mode::ColorBurn << 0 << 255 << 255;
    QTest::newRow("Soft light, black stamp: the square, 51 * 51 / 255") << Mode::SoftLight << 0 << 51 << 10;
    QTest::newRow("Soft light, white stamp: the root of a quarter") << Mode::SoftLight << 255 << 64 << 128;
    QTest::newRow("Difference") << Mode::Difference << 50 << 200 << 150;
    QTest::newRow("Exclusion: 200 - 2 * 100 * 100 / 255") << Mode::Exclusion << 100 << 100 << 122;
    QTest::newRow("Addition") << Mode::Addition << 50 << 100 << 150;
    QTest::newRow("Addition above white") << Mode::Addition << 200 << 100 << 255;
}

void TestOverlayRule::MixesOpaqueColours()
{
    QFETCH(Mode, mode);
    QFETCH(int, over);
    QFETCH(int, under);
    QFETCH(int, expected);
    YDRGBA32i pixel = Grey(under);
    OverlayRule(int(mode), 1.0)(Grey(over), pixel);
    QCOMPARE(int(pixel.r), expected);
    QCOMPARE(QRgb(pixel), QRgb(Grey(expected)));
    YDRGBA32i half = Grey(under);
    OverlayRule(int(mode), 0.5)(Grey(over), half);
    if (mode != Mode::Addition)
        QVERIFY(IsNearest(half.r, (under + Blended(mode, under / 255.0, over / 255.0) * 255) / 2));
    else
        QCOMPARE(int(half.r), under + over / 2);
}

void TestOverlayRule::EveryOpaquePairIsRoundedToTheNearestLevel_data() { AddModes(); }

void TestOverlayRule::EveryOpaquePairIsRoundedToTheNearestLevel()
{
    QFETCH(Mode, mode);
    for (const double opacity : {1.0, 0.37}) {
        const OverlayRule rule(int(mode), opacity);
        for (int over = 0; over < 256; ++over)
            for (int under = 0; under < 256; ++under) {
                YDRGBA32i pixel = Grey(under);
                rule(Grey(over), pixel);
                const Result exact = Composed(mode, Grey(over), Grey(under), opacity);
                QVERIFY2(IsNearest(pixel.r, exact.channel[2]),
                         qPrintable(QStringLiteral("%1 on %2: %3 instead of %4")
                                        .arg(over)
                                        .arg(under)
                                        .arg(pixel.r)
                                        .arg(exact.channel[2])));
                QCOMPARE(int(pixel.a), 255);
            }
    }
}

void TestOverlayRule::TranslucentPixelsAreComposedByTheirAlpha_data() { AddModes(); }

void TestOverlayRule::TranslucentPixelsAreComposedByTheirAlpha()
{
    QFETCH(Mode, mode);
    std::minstd_rand random(3);
    const Row overs = KernelCheck::RandomRow(20000, random);
    const Row unders = KernelCheck::RandomRow(20000, random);
    for (const double opacity : {1.0, 0.6}) {
        const OverlayRule rule(int(mode), opacity);
        for (std::size_t i = 0; i < overs.size(); ++i) {
            if (overs[i].a == 0)
                continue;
            YDRGBA32i pixel = unders[i];
            rule(overs[i], pixel);
            const Result exact = Composed(mode, overs[i], unders[i], opacity);
            QVERIFY(IsNearest(pixel.b, exact.channel[0]));
            QVERIFY(IsNearest(pixel.g, exact.channel[1]));
            QVERIFY(IsNearest(pixel.r, exact.channel[2]));
            QVERIFY(IsNearest(pixel.a, exact.alpha));
        }
    }
}

void TestOverlayRule::TheNumbersAreThoseOfAPainter_data() { AddModes(); }

/// A painter reckons with levels all the way, so its rounding errors add up to a few.
void TestOverlayRule::TheNumbersAreThoseOfAPainter()
{
    QFETCH(Mode, mode);
    constexpr int PainterError = 3;
    const OverlayRule rule(int(mode), 1.0);
    for (int over = 0; over < 256; over += 15) {
        QImage painted(256, 1, QImage::Format_ARGB32_Premultiplied);
        for (int under = 0; under < 256; ++under)
            painted.setPixel(under, 0, QRgb(Grey(under)));
        QPainter painter(&painted);
        painter.setCompositionMode(QPainter::CompositionMode(mode));
        painter.fillRect(painted.rect(), QColor(over, over, over));
        painter.end();
        for (int under = 0; under < 256; ++under) {
            YDRGBA32i pixel = Grey(under);
            rule(Grey(over), pixel);
            QVERIFY2(std::abs(pixel.r - qRed(painted.pixel(under, 0))) <= PainterError,
                     qPrintable(QStringLiteral("%1 on %2").arg(over).arg(under)));
        }
    }
}

void TestOverlayRule::WhatCoversNothingLeavesEveryByte_data() { AddModes(); }

void TestOverlayRule::WhatCoversNothingLeavesEveryByte()
{
    QFETCH(Mode, mode);
    std::minstd_rand random(4);
    for (const YDRGBA32i& under : KernelCheck::RandomRow(1000, random)) {
        YDRGBA32i pixel = under;
        OverlayRule(int(mode), 1.0)(YDRGBA32i(1, 2, 3, 0), pixel);
        OverlayRule(int(mode), 0.0)(YDRGBA32i(1, 2, 3, 255), pixel);
        QCOMPARE(QRgb(pixel), QRgb(under));
    }
}

void TestOverlayRule::ANumberThatIsNoModeIsNormal_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("lowest") << std::numeric_limits<int>::min();
    QTest::newRow("-1") << -1;
    QTest::newRow("1") << 1;
    QTest::newRow("11") << 11;
    QTest::newRow("24") << 24;
    QTest::newRow("highest") << std::numeric_limits<int>::max();
}

void TestOverlayRule::ANumberThatIsNoModeIsNormal()
{
    QFETCH(int, number);
    QCOMPARE(int(OverlayRule(number, 1.0).mode), 0);
    YDRGBA32i pixel = Grey(7);
    OverlayRule(number, 1.0)(Grey(90), pixel);
    QCOMPARE(QRgb(pixel), QRgb(Grey(90)));
}

void TestOverlayRule::OpacityOutOfRangeCountsAsTheNearestBound()
{
    const float full = OverlayRule(0, 1.0).weight;
    QCOMPARE(OverlayRule(0, 1e300).weight, full);
    QCOMPARE(OverlayRule(0, std::numeric_limits<double>::infinity()).weight, full);
    QCOMPARE(OverlayRule(0, -1.0).weight, 0.0f);
    QCOMPARE(OverlayRule(0, std::numeric_limits<double>::quiet_NaN()).weight, 0.0f);
}

void TestOverlayRule::RowsEqualPixels_data() { AddModes(); }

void TestOverlayRule::RowsEqualPixels()
{
    QFETCH(Mode, mode);
    constexpr int LongestRow = 100;
    constexpr int LongRow = 100000;
    std::minstd_rand random(5);
    std::vector<qint64> targets = KernelCheck::Targets();
    targets.push_back(0); // all of them
    Row overs = KernelCheck::RandomRow(LongRow, random);
    Row unders = KernelCheck::RandomRow(LongRow, random);
    for (std::size_t i = 0; i < overs.size(); ++i) { // as pictures have them: often opaque, often without any
        overs[i].a = i % 5 == 0 ? 0 : i % 3 == 0 ? 255 : overs[i].a;
        unders[i].a = i % 2 == 0 ? 255 : unders[i].a;
    }
    const OverlayRule rule(int(mode), 0.8);
    Row expected = unders;
    for (std::size_t i = 0; i < overs.size(); ++i)
        rule(overs[i], expected[i]);
    for (const qint64 target : targets) {
        const KernelCheck::Restriction restriction(target);
        Row actual = unders;
        rule.ProcessRow(overs.data(), actual.data(), LongRow);
        QVERIFY2(actual == expected, qPrintable(KernelCheck::NameOf(target)));
        for (int count = 0; count <= LongestRow; ++count)
            for (int first = 0; first < 4; ++first) {
                actual = Row(unders.begin(), unders.begin() + LongestRow + 8);
                rule.ProcessRow(overs.data() + first, actual.data() + first, count);
                for (int x = 0; x < int(actual.size()); ++x) {
                    const auto at = std::size_t(x);
                    const bool isInside = x >= first && x < first + count;
                    QVERIFY(actual[at] == (isInside ? expected[at] : unders[at]));
                }
            }
    }
}

QTEST_APPLESS_MAIN(TestOverlayRule)
#include "tst_OverlayRule.moc"
