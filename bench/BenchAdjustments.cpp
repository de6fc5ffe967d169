#include "BenchAdjustments.h"

#include "YDAverageTintRGB32.h"
#include "gui/YodiCustomSlider.h"
#include "image/KVFillTransformation.h"
#include "image/KVIterativeSelectiveColorsTransformation.h"
#include "image/KVIterativeWBTransformation.h"
#include "image/OverlayRule.h"
#include "image/YDColorEnhancerTransformation.h"
#include "image/YDHueSaturationTransformation.h"
#include "image/YDIterativeBlackAndWhiteTransformation.h"
#include "image/YDIterativeBrightnessContrastTransformation.h"
#include "image/YDIterativeColorBalanceTransformation.h"
#include "image/YDIterativeColorizeTransformation.h"
#include "image/YDIterativeCurvesTransformation.h"
#include "image/YDIterativeExposureTransformation.h"
#include "image/YDIterativeGammaCorrectionTransformation.h"
#include "image/YDIterativeLevelsTransformation.h"
#include "image/YDIterativePhotoFilterTransformation.h"
#include "image/YDIterativePosterizeTransformation.h"
#include "image/YDTemperatureCorrection.h"
#include "image/YDThresholdRGB32.h"
#include "image/YDTintRGB32.h"
#include "overlay/DrawText.h"
#include "overlay/OverlayCanvas.h"
#include "overlay/TextOverlay.h"

#include <array>

namespace {

/// A contrast curve for all channels, and a correction of each.
BenchAdjustment::Rule ContrastCurves()
{
    const std::array<QVector<QPoint>, 4> curves{{{{0, 0}, {64, 48}, {192, 208}, {255, 255}},
                                                 {{10, 0}, {255, 255}},
                                                 {{0, 0}, {240, 255}},
                                                 {{0, 20}, {255, 255}}}};
    return RuleOf(YDIterativeCurvesTransformation(curves.data(), 100));
}

bool MoveFirstHandle(QObject* control, const QVariant& value)
{
    auto* const slider = qobject_cast<YodiCustomSlider*>(control);
    if (slider)
        slider->ChangeValue(0, value.toInt());
    return slider;
}

BenchAdjustment::Rule BalancedTones()
{
    constexpr int CyanRed[] = {20, -10, 15};
    constexpr int MagentaGreen[] = {-10, 20, 5};
    constexpr int YellowBlue[] = {30, -20, 10};
    return RuleOf(YDIterativeColorBalanceTransformation(CyanRed, MagentaGreen, YellowBlue));
}

/// Every channel has a table of its own.
BenchAdjustment::Rule StretchedLevels()
{
    constexpr int Input[4][2] = {{20, 230}, {10, 250}, {5, 240}, {0, 220}};
    constexpr int Output[4][2] = {{0, 250}, {5, 255}, {255, 0}, {10, 245}};
    constexpr double Gamma[4] = {1.2, 0.8, 1.1, 1.5};
    constexpr int Strength = 100;
    return RuleOf(YDIterativeLevelsTransformation(Input, Output, Gamma, Strength));
}

BenchAdjustment::Rule WarmedLight()
{
    YDTemperatureCorrection correction;
    correction.SetData(4000, 80, 20);
    return RuleOf(correction);
}

/// The analysis of the picture included.
void AnalysedBalance(const RGBA32iImage& image, const RGBA32iImage& source, BenchAdjustment::Road road)
{
    const RGBA32iImage& analysed = source.IsEmpty() ? image : source;
    RuleOf(KVIterativeWBTransformation(analysed, KVWBTransformation::Auto, 80))(image, source, road);
}

BenchAdjustment::Rule EnhancedColours()
{
    constexpr int Input[][2] = {{0, 255}, {10, 240}, {12, 245}, {8, 230}};
    constexpr int Output[][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
    constexpr double Gamma[] = {1.0, 1.0, 1.0, 1.0};
    YDColorEnhancerTransformation enhancer;
    enhancer.SetLevels(YDLevelsTransformation(Input, Output, Gamma, 100));
    enhancer.SetAmountData(60);
    return RuleOf(enhancer);
}

BenchAdjustment::Rule FilledWith(QRgb color)
{
    KVFillTransformation fill;
    fill.SetData(color);
    return RuleOf(fill);
}

/// Every range and every ink.
BenchAdjustment::Rule ShiftedInks()
{
    SelectiveParamsList list;
    float percentage = -80.0f;
    for (SelectiveParams& params : list.targets) {
        params = {percentage, -percentage, percentage / 2.0f, 10.0f};
        percentage += 20.0f;
    }
    return RuleOf(KVIterativeSelectiveColorsTransformation(list));
}

/// A stamp as large as the picture: translucent colours, the same in every piece of a row.
BenchAdjustment::Rule LaidOver(KVCompositionMode mode)
{
    using Piece = std::array<YDRGBA32i, OverlayCanvas::PiecePixels>;
    Piece stamp;
    for (std::size_t x = 0; x < stamp.size(); ++x)
        stamp[x] = YDRGBA32i(QRgb(x * 2654435761u) | 0x80000000u);
    return [stamp, rule = OverlayRule(int(mode), 0.8)](const RGBA32iImage& image, const RGBA32iImage& picture,
                                                       BenchAdjustment::Road road) {
        const auto source = [&stamp](int, int, int, YDRGBA32i*) { return stamp.data(); };
        const OverlayCanvas canvas(image, {}, {}, {}, nullptr, picture);
        if (road == BenchAdjustment::Road::Vector) {
            canvas.Lay(source, canvas.Reach(), rule);
            return;
        }
        for (int y = 0; y < image.Height(); ++y)
            for (int x = 0; x < image.Width(); ++x)
                rule(stamp[std::size_t(x) % stamp.size()], image.Row(y)[x]);
    };
}

/// Nine texts across the picture, from laying out the letters on.
void WriteTexts(const RGBA32iImage& image, const RGBA32iImage& source, BenchAdjustment::Road)
{
    TextOverlay overlay;
    overlay.text = QStringLiteral("Watermark");
    overlay.font.setPixelSize(200);
    overlay.color = Qt::white;
    overlay.angle = 30;
    overlay.opacity = 40;
    overlay.hrzTiles = 3;
    overlay.vrtTiles = 3;
    if (!DrawText(overlay, OverlayCanvas(image, {}, {}, {}, nullptr, source)).isEmpty())
        qFatal("there is not enough memory for a text");
}

} // namespace

const std::vector<BenchAdjustment>& BenchAdjustments()
{
    static const std::vector<BenchAdjustment> adjustments{
        {"brightness-contrast",
         RuleOf(YDIterativeBrightnessContrastTransformation(20, 30)),
         "m_pBrightnessSlider",
         "value",
         {20, -20}},
        {"exposure",
         RuleOf(YDIterativeExposureTransformation(1.0, 0.05)),
         "m_pExposureSpin",
         "value",
         {1.0, -1.0}},
        {"gamma", RuleOf(YDIterativeGammaCorrectionTransformation(2.2)), "m_pGammaSpin", "value", {2.2, 0.5}},
        {"posterize", RuleOf(YDIterativePosterizeTransformation(8)), "m_pPosterizeSpin", "value", {8, 16}},
        {"levels",
         StretchedLevels(),
         "m_pLowInput",
         "value",
         {20, 30},
         R"({"input": [[20, 230], [10, 250], [5, 240], [0, 220]], "gamma": [1.2, 0.8, 1.1, 1.5],
             "output": [[0, 250], [5, 255], [255, 0], [10, 245]]})"},
        {"curves", ContrastCurves(), "m_pInputSlider", "first handle", {40, 20}, "{}", MoveFirstHandle},
        {"threshold", RuleOf(YDThresholdRGB32()), "m_pThresholdLevel", "value", {100, 160}},
        {"hue-saturation",
         RuleOf(YDHueSaturationTransformation(40, 25, -10, false)),
         "m_pHueSpin",
         "value",
         {40, 80},
         R"({"saturation": 25, "lightness": -10})"},
        {"color-balance",
         BalancedTones(),
         "m_pCRSpin",
         "value",
         {-10, 10},
         R"({"cyanRed": [20, -10, 15], "magentaGreen": [-10, 20, 5], "yellowBlue": [30, -20, 10]})"},
        {"black-and-white",
         RuleOf(YDIterativeBlackAndWhiteTransformation(false, 0.2f, 0.5f, 0.1f)),
         "m_pRed",
         "value",
         {0.2, 0.4},
         R"({"type": 5, "g": 0.5, "b": 0.1})"}, // the weights can be moved for the custom set alone
        {"black-and-white-of-light",
         RuleOf(YDIterativeBlackAndWhiteTransformation(true, 0.212671f, 0.71516f, 0.072169f)),
         nullptr,
         nullptr,
         {}},
        {"colorize",
         RuleOf(YDIterativeColorizeTransformation(YDRGBA32i(0xffffd2ffu), 60)),
         "m_pAmount",
         "value",
         {60, 30}},
        {"photo-filter",
         RuleOf(YDIterativePhotoFilterTransformation(YDRGBA32i(0xffebb113u), 60)),
         "m_pDensity",
         "value",
         {60, 30}},
        {"tint",
         RuleOf(YDAverageTintRGB32<333, 334, 333>(0xff050608u, 0xffaad1ffu, 191250)),
         "m_pAmount",
         "value",
         {60, 30}},
        {"tint-by-channel", RuleOf(YDTintRGB32(0xff050608u, 0xffaad1ffu, 75)), nullptr, nullptr, {}},
        {"temperature",
         WarmedLight(),
         "m_pTemperature",
         "value",
         {4000, 9000},
         R"({"tint": 20, "strength": 80})"},
        {"white-balance", AnalysedBalance, "m_pWBStrength", "value", {60, 30}},
        {"color-enhancer", EnhancedColours(), "m_pAmount", "value", {60, 30}},
        {"replace-color",
         nullptr,
         "m_pDestinationOpacity",
         "value",
         {50, 60},
         R"({"tolerance": 60, "color": "#1478c8"})",
         nullptr,
         true},
        {"fill-color",
         FilledWith(qRgba(20, 120, 200, 127)), // 50 %
         "m_pOpacity",
         "value",
         {50, 60},
         R"({"color": "#1478c8"})",
         nullptr,
         true},
        {"fill-color-opaque", FilledWith(qRgb(20, 120, 200)), nullptr, nullptr, {}},
        {"selective-colors", ShiftedInks(), "m_pCyan", "value", {30, -30}},
        {"sign", LaidOver(KVCompositionMode::Normal), nullptr, nullptr, {}},
        {"sign-soft-light", LaidOver(KVCompositionMode::SoftLight), nullptr, nullptr, {}},
        {"watermark", WriteTexts, nullptr, nullptr, {}},
    };
    return adjustments;
}
