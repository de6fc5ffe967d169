#include "image/YDTintRGB32.h"

#include <algorithm>

YDTintRGB32::YDTintRGB32(QRgb blackTone, QRgb whiteTone, int amount)
{
    const double share = std::clamp(amount, 0, 100) / 100.0;
    const auto ramp = [share](int black, int white) {
        Table table;
        for (int v = 0; v < 256; ++v) {
            const double tone = black + (white - black) * v / 255.0;
            table[static_cast<std::size_t>(v)] = ToLevel(v + (tone - v) * share);
        }
        return table;
    };
    const YDRGBA32i black(blackTone);
    const YDRGBA32i white(whiteTone);
    SetTables(ramp(black.r, white.r), ramp(black.g, white.g), ramp(black.b, white.b));
}
