// The selective colours of SelectiveColorsRule and the blend of YDBlend::YDSourceBySelection, step by step
// the same whole numbers, so that a device and the processor give the same bytes. Whoever changes one of
// them changes the other.
//
// A pixel is 32 bits: blue, green, red and alpha from the lowest byte up.

#define WHITE 255
#define INKS 3
#define SHIFT_BITS 20
#define HALF (1 << (SHIFT_BITS - 1))

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

int Inked(int channel, int sum, int relative)
{
    const int ink = WHITE - channel;
    const int change = ((relative ? ink : WHITE) * sum + HALF) >> SHIFT_BITS;
    return WHITE - clamp(ink + change, 0, WHITE);
}

uint Adjusted(uint pixel, __constant int* shift, int relative)
{
    const int b = pixel & 0xff;
    const int g = pixel >> 8 & 0xff;
    const int r = pixel >> 16 & 0xff;
    const int greatest = max(max(r, g), b);
    const int least = min(min(r, g), b);
    const int middle = r + g + b - greatest - least;
    const int primary = greatest == r ? Reds : greatest == g ? Greens : Blues;
    const int secondary = least == b ? Yellows : least == r ? Cyans : Magentas;
    const int white = max(2 * least - WHITE, 0);
    const int black = max(WHITE - 2 * greatest, 0);
    const int neutral = WHITE - (greatest - least) - white - black;
    int sum[INKS];
    for (int ink = 0; ink < INKS; ++ink)
        sum[ink] = (greatest - middle) * shift[primary * INKS + ink] +
                   (middle - least) * shift[secondary * INKS + ink] + white * shift[Whites * INKS + ink] +
                   neutral * shift[Neutrals * INKS + ink] + black * shift[Blacks * INKS + ink];
    return (pixel & 0xff000000u) | (uint)Inked(r, sum[0], relative) << 16 |
           (uint)Inked(g, sum[1], relative) << 8 | (uint)Inked(b, sum[2], relative);
}

uint Mixed(uint source, uint destination, uint coverage)
{
    const uint sum = source * coverage + destination * (WHITE - coverage) + 128;
    return (sum + (sum >> 8)) >> 8;
}

uint Blended(uint source, uint destination, uint coverage)
{
    uint blended = 0;
    for (int bits = 0; bits < 32; bits += 8)
        blended |= Mixed(source >> bits & 0xff, destination >> bits & 0xff, coverage) << bits;
    return blended;
}

// Some rows, a work item a pixel; what lies outside of the columns [left, right) is copied. `source` begins
// `skippedRows` rows above them. `mask` is read only where `hasMask` is not 0; its pixel (`maskColumn`, 0)
// lies in the first row at `left`.
__kernel void AdjustSelectiveColors(__global const uint* source, int skippedRows, __global uint* result,
                                    int width, int rowLength, __constant int* shift, int relative, int left,
                                    int right, __global const uint* mask, int maskColumn, int maskRowLength,
                                    int hasMask)
{
    const int x = get_global_id(0);
    const int y = get_global_id(1);
    if (x >= width)
        return;
    const uint pixel = source[(y + skippedRows) * rowLength + x];
    uint answer = pixel;
    if (x >= left && x < right) {
        answer = Adjusted(pixel, shift, relative);
        if (hasMask)
            answer = Blended(answer, pixel, mask[y * maskRowLength + maskColumn + (x - left)] >> 24);
    }
    result[y * rowLength + x] = answer;
}
