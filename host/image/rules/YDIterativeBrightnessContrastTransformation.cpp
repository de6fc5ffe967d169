#include "image/YDIterativeBrightnessContrastTransformation.h"

#include <algorithm>

namespace {

constexpr int LargestAmount = 127;
constexpr double MidGrey = 127.5;

double Contrasted(double distanceFromMidGrey, int contrast)
{
    if (contrast == LargestAmount) // an infinitely steep slope: only the side of mid grey counts
        return distanceFromMidGrey > 0.0 ? 255.0 : distanceFromMidGrey < 0.0 ? -255.0 : 0.0;
    const double slope = contrast <= 0 ? (LargestAmount + contrast) / double(LargestAmount)
                                       : double(LargestAmount) / (LargestAmount - contrast);
    return distanceFromMidGrey * slope;
}

} // namespace

YDIterativeBrightnessContrastTransformation::YDIterativeBrightnessContrastTransformation(int brightness,
                                                                                         int contrast)
{
    const int b = std::clamp(brightness, -LargestAmount, LargestAmount);
    const int c = std::clamp(contrast, -LargestAmount, LargestAmount);
    Table table;
    for (int v = 0; v < 256; ++v)
        table[static_cast<std::size_t>(v)] = ToLevel(Contrasted(v + b - MidGrey, c) + MidGrey);
    SetTable(table);
}
