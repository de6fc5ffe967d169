#include "KernelCheck.h"
#include "YDAverageTintRGB32.h"
#include "YDIterativeTintTransformation.h"
#include "simd/AverageTint.h"

#include <QTest>

#include <climits>
#include <cstdint>

namespace {

using Average = YDAverageTintRGB32<333, 334, 333>;
using Ntsc = YDAverageTintRGB32<300, 590, 110>;
using Luma = YDAverageTintRGB32<212, 715, 73>;

constexpr QRgb DefaultBlack = 0xff050608;
constexpr QRgb DefaultWhite = 0xffaad1ff;
constexpr QRgb Black = 0xff000000;
constexpr QRgb White = 0xffffffff;

template <class Functor>
YDRGBA32i Tinted(const Functor& functor, YDRGBA32i pixel)
{
    functor(pixel);
    return pixel;
}

/// The rule in 64 bits, straight from its definition.
YDRGBA32i ByDefinition(const int (&weights)[3], YDRGBA32i black, YDRGBA32i white, qint64 amount,
                       YDRGBA32i pixel)
{
    const qint64 level =
        qint64(weights[0]) * pixel.r + qint64(weights[1]) * pixel.g + qint64(weights[2]) * pixel.b;
    const auto mix = [level, amount](qint64 channel, qint64 blackChannel, qint64 whiteChannel) {
        const qint64 tone = (whiteChannel * level + blackChannel * (255000 - level)) / 255000;
        return quint8((tone * amount + channel * (255000 - amount)) / 255000);
    };
    return {mix(pixel.b, black.b, white.b), mix(pixel.g, black.g, white.g), mix(pixel.r, black.r, white.r),
            pixel.a};
}

/// Where a functor with these weights differs from the definition, in either form; empty if nowhere.
template <class Functor>
QString DifferenceFromDefinition(const int (&weights)[3], const KernelCheck::Row& row, QRgb black, QRgb white,
                                 int amount)
{
    YDIterativeTintTransformation<Functor> rule(Functor(black, white, amount));
    KernelCheck::Row rows = row;
    rule.ProcessRow(rows.data(), int(rows.size()));
    KernelCheck::Row pixels = row;
    rule.SetProcessingBuffer(pixels.data());
    for (std::size_t i = 0; i < row.size(); ++i) {
        rule.ProcessPixel(qsizetype(i));
        const YDRGBA32i expected = ByDefinition(weights, black, white, amount, row[i]);
        if (rows[i] != expected || pixels[i] != expected)
            return QStringLiteral("pixel %1, tones %2 and %3, amount %4: %5 and %6 instead of %7")
                .arg(QRgb(row[i]), 0, 16)
                .arg(black, 0, 16)
                .arg(white, 0, 16)
                .arg(amount)
                .arg(QRgb(rows[i]), 0, 16)
                .arg(QRgb(pixels[i]), 0, 16)
                .arg(QRgb(expected), 0, 16);
    }
    return {};
}

QString DifferenceOfAllTypes(const KernelCheck::Row& row, QRgb black, QRgb white, int amount)
{
    return DifferenceFromDefinition<Average>({333, 334, 333}, row, black, white, amount) +
           DifferenceFromDefinition<Ntsc>({300, 590, 110}, row, black, white, amount) +
           DifferenceFromDefinition<Luma>({212, 715, 73}, row, black, white, amount);
}

} // namespace

class TestYDAverageTintRGB32 : public QObject
{
    Q_OBJECT

private slots:
    void APixelMovesOntoTheRamp_data();
    void APixelMovesOntoTheRamp();
    void AmountZeroChangesNothing();
    void FullBlackAndWhiteGiveTheTruncatedGrey();
    void BlackAndWhiteBecomeTheTones();
    void AmountsOutsideCountAsTheNearestBound();

    void RowsEqualPixelsOnEveryTarget_data();
    void RowsEqualPixelsOnEveryTarget();
    void EveryGreyAndCornerFollowsTheDefinition();
    void AMillionPixelsAndTonesFollowTheDefinition();
    void TheReciprocalDividesEveryNumerator();
    void TheFactorSharesEveryDifference();
};

void TestYDAverageTintRGB32::APixelMovesOntoTheRamp_data()
{
    QTest::addColumn<int>("amount");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    // L = 333 * 100 + 334 * 150 + 333 * 200 = 150000. Red: (170 * 150000 + 5 * 105000) / 255000 = 102.06,
    // green (209 * 150000 + 6 * 105000) / 255000 = 125.41, blue (255 * 150000 + 8 * 105000) / 255000 =
    // 153.29.
    QTest::newRow("whole") << 255000 << QRgb(0x116496c8) << QRgb(0x11667d99);
    // Three quarters of 102, 125, 153 and a quarter of 100, 150, 200: 101.5, 131.25, 164.75.
    QTest::newRow("three quarters") << 191250 << QRgb(0x806496c8) << QRgb(0x806583a4);
    // One part in 255000 of 102 above 100, of 125 below 150, of 153 below 200: a truncated step down.
    QTest::newRow("least") << 1 << QRgb(0x006496c8) << QRgb(0x006495c7);
}

void TestYDAverageTintRGB32::APixelMovesOntoTheRamp()
{
    QFETCH(int, amount);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QCOMPARE(QRgb(Tinted(Average(DefaultBlack, DefaultWhite, amount), before)), after);
}

void TestYDAverageTintRGB32::AmountZeroChangesNothing()
{
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(QRgb(Tinted(Luma(DefaultBlack, DefaultWhite, 0), pixel)), QRgb(pixel));
}

void TestYDAverageTintRGB32::FullBlackAndWhiteGiveTheTruncatedGrey()
{
    const Ntsc rule(Black, White, Ntsc::FullAmount);
    QCOMPARE(QRgb(Tinted(rule, QRgb(0xff0000ff))), qRgb(28, 28, 28));    // 28.05
    QCOMPARE(QRgb(Tinted(rule, QRgb(0xff00ff00))), qRgb(150, 150, 150)); // 150.45
    QCOMPARE(QRgb(Tinted(rule, QRgb(0xff010203))), qRgb(1, 1, 1));       // 1.81
    for (int v = 0; v < 256; ++v)
        QCOMPARE(QRgb(Tinted(rule, qRgb(v, v, v))), qRgb(v, v, v));
}

void TestYDAverageTintRGB32::BlackAndWhiteBecomeTheTones()
{
    const Average rule(DefaultBlack, DefaultWhite, Average::FullAmount);
    QCOMPARE(QRgb(Tinted(rule, Black)), DefaultBlack);
    QCOMPARE(QRgb(Tinted(rule, White)), DefaultWhite);
}

void TestYDAverageTintRGB32::AmountsOutsideCountAsTheNearestBound()
{
    const QRgb pixel = qRgb(10, 120, 250);
    QCOMPARE(Tinted(Average(DefaultBlack, DefaultWhite, INT_MIN), pixel),
             Tinted(Average(DefaultBlack, DefaultWhite, 0), pixel));
    QCOMPARE(Tinted(Average(DefaultBlack, DefaultWhite, INT_MAX), pixel),
             Tinted(Average(DefaultBlack, DefaultWhite, Average::FullAmount), pixel));
}

void TestYDAverageTintRGB32::RowsEqualPixelsOnEveryTarget_data()
{
    QTest::addColumn<QRgb>("black");
    QTest::addColumn<QRgb>("white");
    QTest::addColumn<int>("amount");
    QTest::newRow("defaults") << DefaultBlack << DefaultWhite << 191250;
    QTest::newRow("to grey") << Black << White << 255000;
    QTest::newRow("to the negative") << White << Black << 255000;
    QTest::newRow("an odd amount") << qRgb(253, 1, 127) << qRgb(2, 254, 128) << 123457;
    QTest::newRow("nothing") << DefaultBlack << DefaultWhite << 0;
    QTest::newRow("least") << DefaultBlack << DefaultWhite << 1;
    QTest::newRow("almost all") << qRgb(200, 100, 0) << qRgb(0, 101, 255) << 254999;
}

void TestYDAverageTintRGB32::RowsEqualPixelsOnEveryTarget()
{
    QFETCH(QRgb, black);
    QFETCH(QRgb, white);
    QFETCH(int, amount);
    const auto kernel = VectorKernels::AverageTintAVX2;
    QCOMPARE(KernelCheck::Difference(kernel, Average(black, white, amount)), QString());
    QCOMPARE(KernelCheck::Difference(kernel, Ntsc(black, white, amount)), QString());
    QCOMPARE(KernelCheck::Difference(kernel, Luma(black, white, amount)), QString());
}

void TestYDAverageTintRGB32::EveryGreyAndCornerFollowsTheDefinition()
{
    const KernelCheck::Row row = KernelCheck::ColourCube();
    for (int percent = 0; percent <= 100; ++percent)
        QCOMPARE(DifferenceOfAllTypes(row, DefaultBlack, DefaultWhite, percent * 2550), QString());
    for (const QRgb black : {Black, White, qRgb(255, 0, 0), qRgb(0, 255, 255)})
        for (const QRgb white : {Black, White, qRgb(0, 0, 255), qRgb(255, 255, 0)})
            QCOMPARE(DifferenceOfAllTypes(row, black, white, Average::FullAmount), QString());
}

void TestYDAverageTintRGB32::AMillionPixelsAndTonesFollowTheDefinition()
{
    std::minstd_rand random(33);
    constexpr int PixelsOfATone = 50;
    for (int pixels = 0; pixels < 1000000; pixels += PixelsOfATone) {
        const KernelCheck::Row tones = KernelCheck::RandomRow(2, random);
        const int amount = int(random() % (Average::FullAmount + 1));
        const KernelCheck::Row row = KernelCheck::RandomRow(PixelsOfATone, random);
        QCOMPARE(DifferenceOfAllTypes(row, tones[0], tones[1], amount), QString());
    }
}

void TestYDAverageTintRGB32::TheReciprocalDividesEveryNumerator()
{
    for (std::int32_t eighth = 0; eighth <= 255 * AverageTint::OddPartOfFull; ++eighth) {
        const float quotient = float(eighth) * AverageTint::Reciprocal;
        if (std::int32_t(quotient) != eighth / AverageTint::OddPartOfFull)
            QFAIL(qPrintable(QStringLiteral("%1 gives %2").arg(eighth).arg(double(quotient))));
    }
}

void TestYDAverageTintRGB32::TheFactorSharesEveryDifference()
{
    for (int share = 0; share < AverageTint::Full; ++share) {
        const unsigned factor = AverageTint::FactorOf(share);
        QVERIFY(factor <= 65535);
        for (int difference = 0; difference < 256; ++difference)
            if (int(unsigned(difference) * factor >> 16) != difference * share / AverageTint::Full)
                QFAIL(qPrintable(QStringLiteral("%1 of %2").arg(share).arg(difference)));
    }
}

QTEST_GUILESS_MAIN(TestYDAverageTintRGB32)
#include "tst_YDAverageTintRGB32.moc"
