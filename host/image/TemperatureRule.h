#pragma once

#include "image/Luma709.h"
#include "image/YDRGBA32i.h"

#include <algorithm>

/// The constants of one YDTemperatureCorrection, and its pixel form.
///
/// Sums of products of 16-bit numbers, but for the chroma's factor: quotients and products of numbers that a
/// float holds exactly, each correctly rounded and none added to another, so that they are the same wherever
/// they are computed.
struct TemperatureRule
{
    static constexpr const char* Kernel = "TemperatureRow";

    struct Weights
    {
        int b;
        int g;
        int r;

        constexpr int Of(const YDRGBA32i& pixel) const { return b * pixel.b + g * pixel.g + r * pixel.r; }
    };

    static constexpr int Shift = 14; ///< of weights and gains, and so of all that they make of levels
    static constexpr int One = 1 << Shift;
    static constexpr int White = 255 * One;
    static constexpr Weights Luma{Luma709::Blue / 2, Luma709::Green / 2, Luma709::Red / 2};

    Weights gains{One, One, One}; ///< the greatest of them One
    Weights gainedLuma = Luma;    ///< luma after the gains
    Weights mixedLuma{0, 0, 0};   ///< luma times strength
    int kept = One;               ///< one less strength
    float mostChroma = 2.0f;      ///< bound of the factor that restores the luma
    float strength = 0.0f;        ///< 0..1

    void operator()(YDRGBA32i& pixel) const
    {
        const int luma = Luma.Of(pixel);
        const int gained = gainedLuma.Of(pixel);
        const int b = gains.b * pixel.b, g = gains.g * pixel.g, r = gains.r * pixel.r;
        const int highest = std::max({b, g, r});
        // As bright as before, and no channel past white.
        const float restored = float(luma) / float(std::max(gained, 1));
        const float fitting = float(White - luma) / float(std::max(highest - gained, 1));
        const float chroma = std::min(std::min(restored, fitting), mostChroma) * strength;
        const int grey = mixedLuma.Of(pixel) + One / 2;
        const auto mixed = [=](int before, int channel) {
            return quint8((kept * before + grey + int(float(channel - gained) * chroma)) / One);
        };
        pixel = {mixed(pixel.b, b), mixed(pixel.g, g), mixed(pixel.r, r), pixel.a};
    }
};

static_assert(TemperatureRule::Luma.b + TemperatureRule::Luma.g + TemperatureRule::Luma.r ==
                  TemperatureRule::One,
              "greys keep their luma");
