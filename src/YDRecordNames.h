#pragma once

/// What each adjustment's record is called in the log. Two records bear the name of another adjustment; that
/// and the line numbers kept here are fixed by the log's format.
struct YDRecordName
{
    const char* source;  ///< such as "src/YDTintWidget"
    const char* subject; ///< as in "Read tint data error."
    int writeLine = 0;   ///< 0: the line of the statement
    int readLine = 0;
};

namespace YDRecordNames {

inline constexpr YDRecordName BrightnessContrast{"src/YDBrightnessContrastWidget", "brightness and contrast"};
inline constexpr YDRecordName HueSaturation{"src/YDHueSaturationWidget", "hue and saturation"};
inline constexpr YDRecordName ColorBalance{"src/YDColorBalanceWidget", "color balance"};
inline constexpr YDRecordName Levels{"src/YDLevelsWidget", "levels", 774, 787};
inline constexpr YDRecordName Curves{"src/YDCurvesWidget", "curves", 1613, 1626};
inline constexpr YDRecordName Threshold{"src/YDThresholdWidget", "threshold", 298, 311};
inline constexpr YDRecordName BlackAndWhite{"src/YDBlackAndWhiteWidget", "BlackAndWhite"};
inline constexpr YDRecordName Colorize{"src/YDColorizeWidget", "colorize", 309, 322};
inline constexpr YDRecordName PhotoFilter{"src/YDPhotoFilterWidget", "photo filter"};
inline constexpr YDRecordName Tint{"src/YDTintWidget", "tint"};
inline constexpr YDRecordName Temperature{"src/YDTemperatureWidget", "temperature"};
inline constexpr YDRecordName WhiteBalance{"src/YDWBWidget", "WB"};
inline constexpr YDRecordName ColorEnhancer{"src/YDColorEnhancerWidget", "color enhancer"};
inline constexpr YDRecordName Sign{"src/YDSignWidget", "sign", 526, 539};
inline constexpr YDRecordName ReplaceColor{"src/YDReplaceColorWidget", "sign", 397, 410};
inline constexpr YDRecordName FillColor{"src/KVFillColorWidget", "colorize", 295, 308};
inline constexpr YDRecordName Watermark{"src/YDWatermarkWidget", "watermark", 522, 535};
inline constexpr YDRecordName SelectiveColors{"src/KVSelectiveColorsWidget", "selective colors", 307, 320};

} // namespace YDRecordNames
