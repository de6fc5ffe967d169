#pragma once

#include "image/SelectiveParamsList.h"
#include "image/VectorKernels.h"
#include "image/YDRGBA32i.h"

#include <algorithm>

/// The constants and the pixel form of KVIterativeSelectiveColorsTransformation.
///
/// Cyan, magenta and yellow are the complements of red, green and blue. Each ink of a pixel changes by the
/// sum of what the nine ranges ask for, weighed by how far the pixel belongs to each. The weights are whole
/// levels, at most four of them are not 0, none is negative, and they sum to 255. All is exact in 32 bits but
/// for the last step, which rounds the change to whole levels, halves up.
struct SelectiveColorsRule
{
    static constexpr auto Kernel = VectorKernels::SelectiveColorsRow;
    static constexpr int White = 255;
    static constexpr int Inks = 3;
    static constexpr int ShiftBits = 20;
    static constexpr int Half = 1 << (ShiftBits - 1);
    /// The shift for 100 per cent: with a weight of White it changes an ink by as much again.
    static constexpr double FullShift = double(1 << ShiftBits) / White;

    enum Range
    {
        Reds,
        Yellows,
        Greens,
        Cyans,
        Blues,
        Magentas,
        Whites,
        Neutrals,
        Blacks
    };

    /// `targets` in the order of Range. Missing ones are 0 and surplus ones are not used; a value outside
    /// -100..100 counts as the nearest bound, and one that is not a number as 0.
    SelectiveColorsRule(const QList<SelectiveParams>& targets, Mode mode);

    qint32 shift[SelectiveParamsList::Ranges]
                [Inks]; ///< of cyan, magenta, yellow, black included; 8224 at most
    bool relative;      ///< to the ink there is, else to full ink

    void operator()(YDRGBA32i& pixel) const
    {
        const int greatest = std::max({pixel.r, pixel.g, pixel.b});
        const int least = std::min({pixel.r, pixel.g, pixel.b});
        const int middle = pixel.r + pixel.g + pixel.b - greatest - least;
        // Of channels that are equal either may be taken, as the weight is 0.
        const Range primary = greatest == pixel.r ? Reds : greatest == pixel.g ? Greens : Blues;
        const Range secondary = least == pixel.b ? Yellows : least == pixel.r ? Cyans : Magentas;
        Weights weights;
        weights.primary = greatest - middle;
        weights.secondary = middle - least;
        weights.white = std::max(2 * least - White, 0);
        weights.black = std::max(White - 2 * greatest, 0);
        weights.neutral = White - (greatest - least) - weights.white - weights.black;
        pixel.r = Inked(pixel.r, SumOf(weights, primary, secondary, 0));
        pixel.g = Inked(pixel.g, SumOf(weights, primary, secondary, 1));
        pixel.b = Inked(pixel.b, SumOf(weights, primary, secondary, 2));
    }

private:
    struct Weights
    {
        int primary;
        int secondary;
        int white;
        int neutral;
        int black;
    };

    int SumOf(const Weights& weights, Range primary, Range secondary, int ink) const
    {
        return weights.primary * shift[primary][ink] + weights.secondary * shift[secondary][ink] +
               weights.white * shift[Whites][ink] + weights.neutral * shift[Neutrals][ink] +
               weights.black * shift[Blacks][ink];
    }

    quint8 Inked(int channel, int sum) const
    {
        const int ink = White - channel;
        const int change = ((relative ? ink : White) * sum + Half) >> ShiftBits;
        return static_cast<quint8>(White - std::clamp(ink + change, 0, White));
    }
};
