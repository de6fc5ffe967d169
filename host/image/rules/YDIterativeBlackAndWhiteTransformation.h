#pragma once

#include "image/BlackAndWhiteRule.h"
#include "image/LinearGreyRule.h"
#include "image/PixelRuleTransformation.h"

/// Makes the picture grey: `r R + g G + b B`, clamped to black and white; alpha stays.
///
/// With the flag the sum is formed of the channels' light, as CIE luminance is, and encoded again; without
/// it, of the channels as they are.
class YDIterativeBlackAndWhiteTransformation : public BaseTransformation
{
public:
    /// Weights in -32..32; values outside count as the nearest bound, one that is not a number as 0. They
    /// need not sum to 1.
    YDIterativeBlackAndWhiteTransformation(bool cieFlag, float r, float g, float b);

    void ProcessPixel(qsizetype index) const
    {
        if (m_isLinear)
            m_linearRule(m_pixels[index]);
        else
            m_rule(m_pixels[index]);
    }
    void ProcessRow(YDRGBA32i* row, int count) const override;

private:
    bool m_isLinear;
    BlackAndWhiteRule m_rule;
    LinearGreyRule m_linearRule;
};
