#pragma once

#include "image/KVCompositionMode.h"
#include "image/YDRGBA32i.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

/// How a pixel of an overlay is laid onto one of a picture: with one of the modes of KVCompositionMode, the
/// overlay's alpha counting as far as the opacity says.
///
/// The formulas are those of the W3C's "Compositing and Blending Level 1", for colours that are not
/// multiplied by their alpha. All is single-precision arithmetic that IEEE 754 rounds the same way
/// everywhere, rounded to whole levels once, halves up. What the overlay does not cover at all keeps its
/// bytes, whatever its alpha.
struct OverlayRule
{
    static constexpr float White = 255.0f;
    static constexpr float Half = 0.5f;                ///< of a level
    static constexpr float PartOfLevel = 1.0f / White; ///< times 255 it is 1 exactly

    KVCompositionMode mode = KVCompositionMode::Normal;
    float weight = 0; ///< of a whole overlay pixel's alpha byte; 1 / 255 for full opacity

    OverlayRule() = default;

    /// Any number that is no mode counts as Normal. `opacity` in 0..1; values outside count as the nearest
    /// bound, one that is no number as 0.
    OverlayRule(int modeNumber, double opacity);

    /// Lays `over` onto `under`.
    void operator()(const YDRGBA32i& over, YDRGBA32i& under) const;

    /// The same for `count` pixels of two rows, with the vector instructions at hand. The rows must not
    /// overlap.
    void ProcessRow(const YDRGBA32i* over, YDRGBA32i* under, int count) const;

    /// The colour that two opaque ones make, in 0..1.
    template <KVCompositionMode Mode>
    static float Mix(float over, float under);

    /// The rule for one mode.
    template <KVCompositionMode Mode>
    static void Lay(const YDRGBA32i& over, YDRGBA32i& under, float weight);

    /// Calls `use` with `mode` as a std::integral_constant.
    template <class Use>
    static void WithMode(KVCompositionMode mode, const Use& use);

private:
    static float Multiply(float over, float under) { return over * under; }
    static float Screen(float over, float under) { return over + under - over * under; }
    static float HardLight(float over, float under)
    {
        return over <= 0.5f ? Multiply(over + over, under) : Screen(over + over - 1.0f, under);
    }
    static float SoftLight(float over, float under);
    static float ColorDodge(float over, float under);
    static float ColorBurn(float over, float under);

    static quint8 Level(float part) { return static_cast<quint8>(part * White + Half); }
};

inline float OverlayRule::SoftLight(float over, float under)
{
    const float shift = over + over - 1.0f;
    if (over <= 0.5f)
        return under + shift * (under - under * under);
    const float bright = under <= 0.25f ? ((16.0f * under - 12.0f) * under + 4.0f) * under : std::sqrt(under);
    return under + shift * (bright - under);
}

inline float OverlayRule::ColorDodge(float over, float under)
{
    if (under <= 0.0f)
        return 0.0f;
    return over >= 1.0f ? 1.0f : std::min(1.0f, under / (1.0f - over));
}

inline float OverlayRule::ColorBurn(float over, float under)
{
    if (under >= 1.0f)
        return 1.0f;
    return over <= 0.0f ? 0.0f : 1.0f - std::min(1.0f, (1.0f - under) / over);
}

template <KVCompositionMode Mode>
float OverlayRule::Mix(float over, float under)
{
    if constexpr (Mode == KVCompositionMode::Multiply)
        return Multiply(over, under);
    else if constexpr (Mode == KVCompositionMode::Screen)
        return Screen(over, under);
    else if constexpr (Mode == KVCompositionMode::Overlay)
        return HardLight(under, over);
    else if constexpr (Mode == KVCompositionMode::Darken)
        return std::min(over, under);
    else if constexpr (Mode == KVCompositionMode::Lighten)
        return std::max(over, under);
    else if constexpr (Mode == KVCompositionMode::ColorDodge)
        return ColorDodge(over, under);
    else if constexpr (Mode == KVCompositionMode::ColorBurn)
        return ColorBurn(over, under);
    else if constexpr (Mode == KVCompositionMode::HardLight)
        return HardLight(over, under);
    else if constexpr (Mode == KVCompositionMode::SoftLight)
        return SoftLight(over, under);
    else if constexpr (Mode == KVCompositionMode::Difference)
        return std::abs(over - under);
    else if constexpr (Mode == KVCompositionMode::Exclusion)
        return over + under - 2.0f * (over * under);
    else
        return over;
}

template <KVCompositionMode Mode>
void OverlayRule::Lay(const YDRGBA32i& over, YDRGBA32i& under, float weight)
{
    const float overAlpha = over.a * weight;
    if (!(overAlpha > 0.0f))
        return;
    const float underAlpha = under.a * PartOfLevel;
    const float underShare = underAlpha * (1.0f - overAlpha);
    const float overShare = overAlpha * (1.0f - underAlpha);
    const float bothShare = overAlpha * underAlpha;
    constexpr bool Adds = Mode == KVCompositionMode::Addition;
    const float covered = Adds ? std::min(1.0f, overAlpha + underAlpha) : overAlpha + underShare;
    const float alpha = underAlpha < 1.0f ? covered : 1.0f; // which the sum may miss by its last bit
    const auto mix = [=](quint8 overLevel, quint8 underLevel) {
        const float above = overLevel * PartOfLevel;
        const float below = underLevel * PartOfLevel;
        if constexpr (Adds)
            return Level(std::min(1.0f, overAlpha * above + underAlpha * below) / alpha);
        else
            return Level((overShare * above + bothShare * Mix<Mode>(above, below) + underShare * below) /
                         alpha);
    };
    under.b = mix(over.b, under.b);
    under.g = mix(over.g, under.g);
    under.r = mix(over.r, under.r);
    under.a = Level(alpha);
}

template <class Use>
void OverlayRule::WithMode(KVCompositionMode mode, const Use& use)
{
    using M = KVCompositionMode;
    switch (mode) {
    case M::Addition:
        return use(std::integral_constant<M, M::Addition>());
    case M::Multiply:
        return use(std::integral_constant<M, M::Multiply>());
    case M::Screen:
        return use(std::integral_constant<M, M::Screen>());
    case M::Overlay:
        return use(std::integral_constant<M, M::Overlay>());
    case M::Darken:
        return use(std::integral_constant<M, M::Darken>());
    case M::Lighten:
        return use(std::integral_constant<M, M::Lighten>());
    case M::ColorDodge:
        return use(std::integral_constant<M, M::ColorDodge>());
    case M::ColorBurn:
        return use(std::integral_constant<M, M::ColorBurn>());
    case M::HardLight:
        return use(std::integral_constant<M, M::HardLight>());
    case M::SoftLight:
        return use(std::integral_constant<M, M::SoftLight>());
    case M::Difference:
        return use(std::integral_constant<M, M::Difference>());
    case M::Exclusion:
        return use(std::integral_constant<M, M::Exclusion>());
    case M::Normal:
        break;
    }
    use(std::integral_constant<M, M::Normal>());
}
