#include <hwy/highway.h>

#include "image/HueSaturationRule.h"
#include "image/VectorKernels.h"
#include "simd/PixelPairLoop.h"

HWY_BEFORE_NAMESPACE();
namespace {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

struct NoVectors
{
    explicit NoVectors(const HueSaturationRule&) {}
};
using WeakenVectors = NoVectors;
using StrengthenVectors = NoVectors;
using OneHueVectors = NoVectors;

#else

/// What the three kinds share: lightness, and the way from numbers to pixels.
class LightnessVectors
{
protected:
    explicit HWY_INLINE LightnessVectors(const HueSaturationRule& rule)
        : m_lightness(hn::Set(ShortTag(), int16_t(rule.keptLightness))),
          m_light(hn::Set(ShortTag(), int16_t(rule.addedLightness)))
    {}

    HWY_INLINE Shorts LightnessOf(Shorts before) const
    {
        return hn::Add(hn::MulFixedPoint15(before, m_lightness), m_light);
    }

    /// Pixels whose channels lie so far from `middle`.
    static HWY_INLINE PixelPair Around(Shorts middle, const Planes& distances)
    {
        const Shorts rounding = hn::Set(ShortTag(), int16_t(HueSaturationRule::Level / 2));
        const Shorts base = hn::Add(middle, rounding);
        const auto level = [base](Shorts distance) { return hn::ShiftRight<6>(hn::Add(base, distance)); };
        static_assert(HueSaturationRule::Level == 1 << 6);
        return MergePair({level(distances.b), level(distances.g), level(distances.r), distances.a});
    }

private:
    Shorts m_lightness;
    Shorts m_light;
};

/// HueSaturationRule::TurnHue.
class HueVectors : public LightnessVectors
{
protected:
    struct Turned
    {
        Planes distances;
        Shorts sum;
        Shorts chroma;
    };

    explicit HWY_INLINE HueVectors(const HueSaturationRule& rule)
        : LightnessVectors(rule), m_turn(hn::Set(ShortTag(), int16_t(rule.turn)))
    {}

    HWY_INLINE Turned TurnHue(const Planes& p) const
    {
        const Shorts highest = hn::Max(hn::Max(p.b, p.g), p.r);
        const Shorts lowest = hn::Min(hn::Min(p.b, p.g), p.r);
        const Shorts chroma = hn::Sub(highest, lowest);
        const Shorts unit = hn::ShiftLeft<4>(chroma);
        const Shorts units2 = hn::Add(unit, unit);
        const Shorts units3 = hn::Add(unit, units2);
        const Shorts units4 = hn::Add(units2, units2);
        const Shorts hue = Wrapped(hn::Add(hn::ShiftLeft<4>(hn::Add(SectorOf(p, highest, chroma), chroma)),
                                           hn::MulFixedPoint15(hn::ShiftLeft<7>(chroma), m_turn)),
                                   hn::Add(units3, units3));
        const Shorts half = hn::ShiftLeft<3>(chroma);
        const Shorts halves3 = hn::Add(unit, half);
        const Planes distances{Bounded(hn::Sub(halves3, hn::Abs(hn::Sub(hue, units4))), half),
                               Bounded(hn::Sub(halves3, hn::Abs(hn::Sub(hue, units2))), half),
                               Bounded(hn::Sub(hn::Abs(hn::Sub(hue, units3)), halves3), half), p.a};
        return {distances, hn::Add(highest, lowest), chroma};
    }

private:
    static HWY_INLINE Shorts SectorOf(const Planes& p, Shorts highest, Shorts chroma)
    {
        const Shorts chroma2 = hn::Add(chroma, chroma);
        const Shorts ofBlue = hn::Add(hn::Add(chroma2, chroma2), hn::Sub(p.r, p.g));
        const Shorts ofGreen = hn::Add(chroma2, hn::Sub(p.b, p.r));
        const Shorts notRed = hn::IfThenElse(hn::Eq(highest, p.g), ofGreen, ofBlue);
        return hn::IfThenElse(hn::Eq(highest, p.r), hn::Sub(p.g, p.b), notRed);
    }

    /// `hue`, which as a number without sign is below two turns, less a turn if it can be: where it cannot,
    /// the difference wraps to a number that is greater.
    static HWY_INLINE Shorts Wrapped(Shorts hue, Shorts fullTurn)
    {
        const WordTag d;
        const Words unsignedHue = hn::BitCast(d, hue);
        return hn::BitCast(ShortTag(), hn::Min(unsignedHue, hn::Sub(unsignedHue, hn::BitCast(d, fullTurn))));
    }

    static HWY_INLINE Shorts Bounded(Shorts distance, Shorts bound)
    {
        return hn::Max(hn::Min(distance, bound), hn::Neg(bound));
    }

    Shorts m_turn;
};

class WeakenVectors : private HueVectors
{
public:
    explicit HWY_INLINE WeakenVectors(const HueSaturationRule& rule)
        : HueVectors(rule), m_chroma(hn::Set(ShortTag(), int16_t(rule.keptChroma)))
    {}

    HWY_INLINE PixelPair operator()(PixelPair pixels) const
    {
        const Turned turned = TurnHue(SplitPair(pixels));
        const Planes& p = turned.distances;
        return Around(LightnessOf(hn::ShiftLeft<6>(turned.sum)),
                      {Scaled(p.b), Scaled(p.g), Scaled(p.r), p.a});
    }

private:
    HWY_INLINE Shorts Scaled(Shorts distance) const
    {
        return hn::MulFixedPoint15(hn::ShiftLeft<3>(distance), m_chroma);
    }

    Shorts m_chroma;
};

class StrengthenVectors : private HueVectors
{
public:
    explicit HWY_INLINE StrengthenVectors(const HueSaturationRule& rule)
        : HueVectors(rule), m_strength(hn::Set(ShortTag(), int16_t(rule.strength))),
          m_rest(hn::Set(ShortTag(), int16_t(100 - rule.strength))),
          m_strengthened(hn::Set(FloatTag(), rule.strengthened)),
          m_mostStrengthened(hn::Set(FloatTag(), rule.mostStrengthened))
    {}

    HWY_INLINE PixelPair operator()(PixelPair pixels) const
    {
        const ShortTag d;
        const Turned turned = TurnHue(SplitPair(pixels));
        const Shorts most = hn::Min(turned.sum, hn::Sub(hn::Set(d, int16_t(510)), turned.sum));
        const Shorts divisor = hn::Max(hn::Add(hn::Mul(m_strength, turned.chroma), hn::Mul(m_rest, most)),
                                       hn::Set(d, int16_t(1)));
        const Shorts factor = FactorOf(ToFloats(most), ToFloats(divisor));
        const Planes& p = turned.distances;
        return Around(LightnessOf(hn::ShiftLeft<6>(turned.sum)),
                      {Scaled(p.b, factor), Scaled(p.g, factor), Scaled(p.r, factor), p.a});
    }

private:
    HWY_INLINE Shorts FactorOf(FloatPair most, FloatPair divisor) const
    {
        const auto bounded = [this](Floats x, Floats y) {
            return hn::Min(hn::Div(hn::Mul(x, m_strengthened), y), m_mostStrengthened);
        };
        return WholeParts({bounded(most.first, divisor.first), bounded(most.second, divisor.second)});
    }

    static HWY_INLINE Shorts Scaled(Shorts distance, Shorts factor)
    {
        const Shorts half = hn::MulFixedPoint15(hn::ShiftLeft<4>(distance), factor);
        return hn::Add(half, half);
    }

    Shorts m_strength;
    Shorts m_rest;
    Floats m_strengthened;
    Floats m_mostStrengthened;
};

class OneHueVectors : private LightnessVectors
{
public:
    explicit HWY_INLINE OneHueVectors(const HueSaturationRule& rule)
        : LightnessVectors(rule), m_blue(hn::Set(ShortTag(), int16_t(rule.hueOf[0]))),
          m_green(hn::Set(ShortTag(), int16_t(rule.hueOf[1]))),
          m_red(hn::Set(ShortTag(), int16_t(rule.hueOf[2])))
    {}

    HWY_INLINE PixelPair operator()(PixelPair pixels) const
    {
        const ShortTag d;
        const Shorts luma =
            WeighedSum(pixels, PairOfShorts(Luma709::Blue, Luma709::Red), PairOfShorts(Luma709::Green, 0));
        const Shorts middle = LightnessOf(luma);
        const Shorts room =
            hn::Min(middle, hn::Sub(hn::Set(d, int16_t(HueSaturationRule::TopLevel)), middle));
        const Shorts rooms2 = hn::Add(room, room);
        return Around(middle, {hn::MulFixedPoint15(rooms2, m_blue), hn::MulFixedPoint15(rooms2, m_green),
                               hn::MulFixedPoint15(rooms2, m_red), SplitPair(pixels).a});
    }

private:
    Shorts m_blue;
    Shorts m_green;
    Shorts m_red;
};

#endif

template <class Vectors, class Rule>
void MapRow(YDRGBA32i* row, size_t count, const HueSaturationRule& rule, const Rule& pixelRule)
{
    MapPixelPairs(row, count, pixelRule, Vectors(rule));
}

void HueSaturationRow(YDRGBA32i* row, size_t count, const HueSaturationRule& rule)
{
    switch (rule.kind) {
    case HueSaturationRule::Kind::Weaken:
        return MapRow<WeakenVectors>(row, count, rule, [&rule](YDRGBA32i& pixel) { rule.Weaken(pixel); });
    case HueSaturationRule::Kind::Strengthen:
        return MapRow<StrengthenVectors>(row, count, rule,
                                         [&rule](YDRGBA32i& pixel) { rule.Strengthen(pixel); });
    case HueSaturationRule::Kind::Colorize:
        return MapRow<OneHueVectors>(row, count, rule, [&rule](YDRGBA32i& pixel) { rule.Colorize(pixel); });
    }
}

} // namespace HWY_NAMESPACE
} // namespace
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace {
HWY_EXPORT(HueSaturationRow);
} // namespace

extern "C" Q_DECL_EXPORT decltype(VectorKernels::HueSaturationRow)::Function HueSaturationRow;

void HueSaturationRow(YDRGBA32i* row, int count, const HueSaturationRule* rule)
{
    if (count > 0)
        HWY_DYNAMIC_DISPATCH(HueSaturationRow)(row, static_cast<size_t>(count), *rule);
}
#endif
