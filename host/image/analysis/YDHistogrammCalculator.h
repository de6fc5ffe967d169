#pragma once

#include "image/ChannelHistograms.h"
#include "image/YDRGBA32i.h"

#include <vector>

/// Counts pixels into four tables of 256 counts that the caller keeps: red, green, blue and luma (Luma709).
class YDHistogrammCalculator
{
public:
    /// The tables, set to zero by the caller, in the order red, green, blue, luma.
    void SetOutput(int* table1, int* table2, int* table3, int* table4);

    /// Counts one pixel.
    void operator()(const YDRGBA32i& pixel) const;

    /// The bounds of what a table holds but for 0.5 % at each end: the first level at which the counts up to
    /// it exceed that share, and the last one at which those from it on do. At least 16 levels lie between
    /// them, so that who stretches what lies between does not turn a plain picture into noise; 0 and 255 for
    /// an empty table.
    static std::vector<int> Threshold(const int* table);
    static std::vector<int> Threshold(const ChannelHistograms::Table& table);

private:
    int* m_red = nullptr;
    int* m_green = nullptr;
    int* m_blue = nullptr;
    int* m_luma = nullptr;
};
