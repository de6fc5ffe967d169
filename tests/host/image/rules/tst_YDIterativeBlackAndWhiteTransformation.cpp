#include "KernelCheck.h"
#include "image/SRgb.h"
#include "image/YDIterativeBlackAndWhiteTransformation.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float Infinite = std::numeric_limits<float>::infinity();
constexpr float Huge = std::numeric_limits<float>::max();
constexpr float LumaRed = 0.212671f;
constexpr float LumaGreen = 0.71516f;
constexpr float LumaBlue = 0.072169f;

struct Weights
{
    float r;
    float g;
    float b;
};

YDRGBA32i Grey(bool cie, const Weights& weights, YDRGBA32i pixel)
{
    YDIterativeBlackAndWhiteTransformation rule(cie, weights.r, weights.g, weights.b);
    rule.SetProcessingBuffer(&pixel);
    rule.ProcessPixel(0);
    return pixel;
}

void AddWeights()
{
    QTest::addColumn<bool>("cie");
    QTest::addColumn<Weights>("weights");
    for (const bool cie : {false, true}) {
        const char* const light = cie ? "light" : "levels";
        QTest::addRow("average of %s", light) << cie << Weights{0.333f, 0.333f, 0.333f};
        QTest::addRow("luminance of %s", light) << cie << Weights{LumaRed, LumaGreen, LumaBlue};
        QTest::addRow("whole sum of %s", light) << cie << Weights{1.0f, 1.0f, 1.0f};
        QTest::addRow("nothing of %s", light) << cie << Weights{0.0f, 0.0f, 0.0f};
        QTest::addRow("difference of %s", light) << cie << Weights{2.0f, -1.5f, 0.25f};
        QTest::addRow("no numbers of %s", light) << cie << Weights{NaN, 0.5f, NaN};
        QTest::addRow("infinite weights of %s", light) << cie << Weights{Infinite, -Infinite, 1.0f};
        QTest::addRow("huge weights of %s", light) << cie << Weights{Huge, Huge, Huge};
        QTest::addRow("huge negative weights of %s", light) << cie << Weights{-Huge, -Huge, -Huge};
    }
}

} // namespace

Q_DECLARE_METATYPE(Weights)

class TestYDIterativeBlackAndWhiteTransformation : public QObject
{
    Q_OBJECT

private slots:
    void LevelsAreWeightedAndClamped_data();
    void LevelsAreWeightedAndClamped();
    void LightIsWeightedAndEncoded_data();
    void LightIsWeightedAndEncoded();
    void WeightsOfOneKeepGreys();
    void LightIsEncodedToTheNearestLevel();
    void EveryWeightIsDefined_data() { AddWeights(); }
    void EveryWeightIsDefined();
    void RowsEqualPixelsOnEveryTarget_data() { AddWeights(); }
    void RowsEqualPixelsOnEveryTarget();
};

void TestYDIterativeBlackAndWhiteTransformation::LevelsAreWeightedAndClamped_data()
{
    QTest::addColumn<Weights>("weights");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<int>("grey");
    QTest::newRow("average") << Weights{0.333f, 0.333f, 0.333f} << qRgb(100, 150, 200) << 150; // 149.85
    QTest::newRow("average of white")
        << Weights{0.333f, 0.333f, 0.333f} << qRgb(255, 255, 255) << 255;                  // 254.7
    QTest::newRow("ntsc of red") << Weights{0.3f, 0.59f, 0.11f} << qRgb(255, 0, 0) << 77;  // 76.5
    QTest::newRow("ntsc of blue") << Weights{0.3f, 0.59f, 0.11f} << qRgb(0, 0, 255) << 28; // 28.05
    QTest::newRow("luminance") << Weights{LumaRed, LumaGreen, LumaBlue} << qRgb(200, 100, 50)
                               << 118; // 117.66
    QTest::newRow("clamped to white") << Weights{1.0f, 1.0f, 1.0f} << qRgb(100, 100, 100) << 255;
    QTest::newRow("clamped to black") << Weights{-1.0f, 0.5f, 0.0f} << qRgb(100, 100, 100) << 0;
    QTest::newRow("red alone") << Weights{1.0f, 0.0f, 0.0f} << qRgb(33, 150, 200) << 33;
    QTest::newRow("the rest may outweigh") << Weights{2.0f, -0.5f, 0.0f} << qRgb(100, 60, 0) << 170;
}

void TestYDIterativeBlackAndWhiteTransformation::LevelsAreWeightedAndClamped()
{
    QFETCH(Weights, weights);
    QFETCH(QRgb, before);
    QFETCH(int, grey);
    const YDRGBA32i pixel(qRgba(qRed(before), qGreen(before), qBlue(before), 77));
    QCOMPARE(QRgb(Grey(false, weights, pixel)), qRgba(grey, grey, grey, 77));
}

void TestYDIterativeBlackAndWhiteTransformation::LightIsWeightedAndEncoded_data()
{
    QTest::addColumn<Weights>("weights");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<int>("grey");
    const Weights luminance{LumaRed, LumaGreen, LumaBlue};
    // 1.055 * 0.212671 ^ (1 / 2.4) - 0.055 = 0.49872, of 255: 127.2.
    QTest::newRow("red") << luminance << qRgb(255, 0, 0) << 127;
    // 1.055 * 0.71516 ^ (1 / 2.4) - 0.055 = 0.86256, of 255: 220.0.
    QTest::newRow("green") << luminance << qRgb(0, 255, 0) << 220;
    // 1.055 * 0.072169 ^ (1 / 2.4) - 0.055 = 0.29790, of 255: 76.0.
    QTest::newRow("blue") << luminance << qRgb(0, 0, 255) << 76;
    // Half of the light of 255: 1.055 * 0.5 ^ (1 / 2.4) - 0.055 = 0.73536, of 255: 187.5.
    QTest::newRow("a bit less than half of white's light")
        << Weights{0.4995f, 0.0f, 0.0f} << qRgb(255, 1, 1) << 187;
    QTest::newRow("clamped to white") << Weights{1.0f, 1.0f, 1.0f} << qRgb(200, 200, 200) << 255;
    QTest::newRow("clamped to black") << Weights{-1.0f, 0.5f, 0.0f} << qRgb(200, 200, 200) << 0;
}

void TestYDIterativeBlackAndWhiteTransformation::LightIsWeightedAndEncoded()
{
    QFETCH(Weights, weights);
    QFETCH(QRgb, before);
    QFETCH(int, grey);
    const YDRGBA32i pixel(qRgba(qRed(before), qGreen(before), qBlue(before), 78));
    QCOMPARE(QRgb(Grey(true, weights, pixel)), qRgba(grey, grey, grey, 78));
}

void TestYDIterativeBlackAndWhiteTransformation::WeightsOfOneKeepGreys()
{
    for (int v = 0; v < 256; ++v) {
        QCOMPARE(QRgb(Grey(false, {LumaRed, LumaGreen, LumaBlue}, qRgb(v, v, v))), qRgb(v, v, v));
        QCOMPARE(QRgb(Grey(true, {LumaRed, LumaGreen, LumaBlue}, qRgb(v, v, v))), qRgb(v, v, v));
    }
}

void TestYDIterativeBlackAndWhiteTransformation::LightIsEncodedToTheNearestLevel()
{
    // Half a step of the encoded sum and of the decoded channels', where the curve is steepest, which
    // is 12.92 * 255 levels for the light of 1; and what the weights and the curve itself are off by.
    constexpr double Steepest = 12.92 * 255;
    constexpr double Error = Steepest / (2 * 16384) + Steepest / (2 * 32767) + 0.02;
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube()) {
        const double light = double(LumaRed) * SRgb::ToLinear(pixel.r / 255.0) +
                             double(LumaGreen) * SRgb::ToLinear(pixel.g / 255.0) +
                             double(LumaBlue) * SRgb::ToLinear(pixel.b / 255.0);
        const int grey = Grey(true, {LumaRed, LumaGreen, LumaBlue}, pixel).g;
        QVERIFY(std::abs(grey - SRgb::FromLinear(light) * 255.0) <= 0.5 + Error);
    }
}

void TestYDIterativeBlackAndWhiteTransformation::EveryWeightIsDefined()
{
    QFETCH(bool, cie);
    QFETCH(Weights, weights);
    const auto bounded = [](float weight) {
        return std::isnan(weight) ? 0.0f : std::min(std::max(weight, -32.0f), 32.0f);
    };
    for (const YDRGBA32i& pixel : KernelCheck::ColourCube())
        QCOMPARE(QRgb(Grey(cie, weights, pixel)),
                 QRgb(Grey(cie, {bounded(weights.r), bounded(weights.g), bounded(weights.b)}, pixel)));
}

void TestYDIterativeBlackAndWhiteTransformation::RowsEqualPixelsOnEveryTarget()
{
    QFETCH(bool, cie);
    QFETCH(Weights, weights);
    const YDIterativeBlackAndWhiteTransformation rule(cie, weights.r, weights.g, weights.b);
    QCOMPARE(cie ? KernelCheck::Difference(VectorKernels::LinearGreyRow, rule, 300000)
                 : KernelCheck::Difference(VectorKernels::BlackAndWhiteRow, rule, 300000),
             QString());
}

QTEST_GUILESS_MAIN(TestYDIterativeBlackAndWhiteTransformation)
#include "tst_YDIterativeBlackAndWhiteTransformation.moc"
