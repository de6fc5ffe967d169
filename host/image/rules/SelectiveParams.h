#pragma once

/// What the selective colours do to one range of colours: how much of each ink is added to it or, below 0,
/// taken away, in per cent, -100..100.
///
/// The values are kept as they were stored, so they may lie outside or be no numbers;
/// SelectiveColorsRule bounds them.
struct SelectiveParams
{
    float cyan = 0.0f;
    float magenta = 0.0f;
    float yellow = 0.0f;
    float black = 0.0f;

    friend bool operator==(const SelectiveParams& x, const SelectiveParams& y)
    {
        return x.cyan == y.cyan && x.magenta == y.magenta && x.yellow == y.yellow && x.black == y.black;
    }
    friend bool operator!=(const SelectiveParams& x, const SelectiveParams& y) { return !(x == y); }
};
