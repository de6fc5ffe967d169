#pragma once

#include "image/Luma709.h"
#include "image/MulFixedPoint15.h"
#include "image/VectorKernels.h"
#include "image/YDRGBA32i.h"

#include <algorithm>

/// The constants of one YDTemperatureCorrection, and its pixel form.
///
/// All numbers fit into 16 bits, so that vectors hold two a pixel; the quotients are correctly rounded
/// divisions, so that they are the same wherever they are computed.
struct TemperatureRule
{
    static constexpr auto Kernel = VectorKernels::TemperatureRow;

    /// Of blue, green and red.
    struct Factors
    {
        int b;
        int g;
        int r;
    };

    static constexpr int One = 1 << 14;  ///< of gains, weights and shares
    static constexpr int Level = 1 << 6; ///< of what they make of levels
    static constexpr int White = 255 * Level;
    static constexpr int Chroma = 1 << 12; ///< of the factor of the chroma
    static constexpr Factors Luma{Luma709::Blue / 2, Luma709::Green / 2, Luma709::Red / 2};

    Factors gains{One, One, One}; ///< the greatest of them One
    Factors gainedLuma = Luma;    ///< luma after the gains
    int kept = One;               ///< share of what was
    int mixed = 0;                ///< the other share
    float mostChroma = 1.0f;      ///< bound of the factor that restores the luma
    float strength = 0.0f;        ///< the other share, in Chroma

    void operator()(YDRGBA32i& pixel) const
    {
        const Factors before{128 * pixel.b, 128 * pixel.g, 128 * pixel.r};
        const Factors gained{MulFixedPoint15(before.b, gains.b), MulFixedPoint15(before.g, gains.g),
                             MulFixedPoint15(before.r, gains.r)};
        const int luma = Sum(before, Luma);
        const int newLuma = Sum(before, gainedLuma);
        // As bright as before, and no channel past white.
        const float restored = float(luma) / float(std::max(newLuma, 1));
        const float fitting =
            float(White - luma) / float(std::max(std::max({gained.b, gained.g, gained.r}) - newLuma, 1));
        const int chroma = int(std::min(std::min(restored, fitting), mostChroma) * strength);
        const int grey = MulFixedPoint15(2 * luma, mixed) + Level / 2;
        const auto mix = [=](int channel, int gainedChannel) {
            const int change = 4 * MulFixedPoint15(2 * (gainedChannel - newLuma), chroma);
            return quint8((MulFixedPoint15(channel, kept) + grey + change) / Level);
        };
        pixel = {mix(before.b, gained.b), mix(before.g, gained.g), mix(before.r, gained.r), pixel.a};
    }

private:
    static int Sum(const Factors& channels, const Factors& weights)
    {
        return MulFixedPoint15(channels.b, weights.b) + MulFixedPoint15(channels.g, weights.g) +
               MulFixedPoint15(channels.r, weights.r);
    }
};

static_assert(TemperatureRule::Luma.b + TemperatureRule::Luma.g + TemperatureRule::Luma.r ==
                  TemperatureRule::One,
              "greys keep their luma");
