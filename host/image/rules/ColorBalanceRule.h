#pragma once

#include "image/MulFixedPoint15.h"
#include "image/VectorKernels.h"
#include "image/YDRGBA32i.h"

#include <cstdlib>

/// The constants of one YDIterativeColorBalanceTransformation, and its pixel form: numbers of 16 bits, with
/// signs or without, of which vectors hold two a pixel.
struct ColorBalanceRule
{
    static constexpr auto Kernel = VectorKernels::ColorBalanceRow;

    /// How far one channel is shifted, in 64ths of a level times ShiftUnit.
    struct Shifts
    {
        int midtones = 0;
        int shadows = 0;    ///< less that of the midtones, doubled
        int highlights = 0; ///< less that of the midtones, doubled
    };

    static constexpr int Level = 1 << 6;
    static constexpr int MiddleLuma = (1 << 14) - 1;
    static constexpr int LumaOfWhite =
        2 * MiddleLuma; ///< four times the middle is just below one in 65536ths
    /// The luma of Rec. ITU-R BT.709, scaled so that white has LumaOfWhite of it.
    static constexpr int LumaOfRed = 6993;
    static constexpr int LumaOfGreen = 23527;
    static constexpr int LumaOfBlue = 2375;
    static constexpr int LumaShift = 8;
    static_assert(255 * (LumaOfRed + LumaOfGreen + LumaOfBlue) >> LumaShift == LumaOfWhite);
    static constexpr int SquareOfWhite = 255 * 255;
    static constexpr double ShiftUnit = 65536.0 / SquareOfWhite; ///< undone with the room

    Shifts b;
    Shifts g;
    Shifts r;

    void operator()(YDRGBA32i& pixel) const
    {
        const int sum = LumaOfRed * pixel.r + LumaOfGreen * pixel.g + LumaOfBlue * pixel.b;
        const int luma = sum >> LumaShift;
        const int end = EndWeight(luma);
        const bool isDark = luma < MiddleLuma;
        pixel.b = Shifted(pixel.b, b, isDark, end);
        pixel.g = Shifted(pixel.g, g, isDark, end);
        pixel.r = Shifted(pixel.r, r, isDark, end);
    }

private:
    /// Weight of the shadows in the darker half of the tones, of the highlights in the brighter, in 16384ths:
    /// u^2 (3 - 2 u) of the distance u from the middle.
    static int EndWeight(int luma)
    {
        const quint32 distance = quint32(std::abs(luma - MiddleLuma)) * 4; // 65536ths
        const quint32 square = distance * distance >> 16;
        return int(square * ((3u << 14) - (distance >> 1)) >> 16);
    }

    static quint8 Shifted(int channel, const Shifts& shifts, bool isDark, int end)
    {
        const int shift = shifts.midtones + MulFixedPoint15(end, isDark ? shifts.shadows : shifts.highlights);
        const int used = shift < 0 ? 255 - channel : channel; // on the way to the end that the shift goes to
        const int room = (SquareOfWhite - used * used) >> 1;  // 32768ths
        return quint8((channel * Level + MulFixedPoint15(shift, room) + Level / 2) / Level);
    }
};
