#pragma once

#include "image/YDIterativeLevelsTransformation.h"

/// Levels as a pixel functor, for rules that go on from there: the rule and the arguments of
/// YDIterativeLevelsTransformation.
class YDLevelsTransformation
{
public:
    YDLevelsTransformation(const int (*input)[2], const int (*output)[2], const double* gamma, int strength)
        : m_levels(input, output, gamma, strength)
    {}

    void operator()(YDRGBA32i& pixel) const { m_levels.Map(pixel); }

    /// The same for `count` pixels, with the vector instructions at hand.
    void ProcessRow(YDRGBA32i* row, int count) const { m_levels.ProcessRow(row, count); }

private:
    YDIterativeLevelsTransformation m_levels;
};
