#pragma once

#include "image/PixelRuleTransformation.h"

/// A rule that mixes the channels of a pixel as a pixel functor, in all three forms.
///
/// `Rule` is copyable and as ApplyRuleToRow() needs it; made by default it must change nothing.
template <class Rule>
class PixelRuleFunctor
{
public:
    void operator()(YDRGBA32i& pixel) const { m_rule(pixel); }

    /// The same for a block of eight pixels, 32 bytes at any address.
    void operator()(unsigned char* pixels, bool) const
    {
        constexpr int BlockPixels = 8;
        ProcessRow(reinterpret_cast<YDRGBA32i*>(pixels), BlockPixels);
    }

    /// The same for `count` pixels, with the vector instructions at hand.
    void ProcessRow(YDRGBA32i* row, int count) const { ApplyRuleToRow(m_rule, row, count); }

protected:
    PixelRuleFunctor() = default;
    explicit PixelRuleFunctor(const Rule& rule) : m_rule(rule) {}

    Rule m_rule;
};
