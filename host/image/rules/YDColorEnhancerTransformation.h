#pragma once

#include "image/ColorEnhancerRule.h"
#include "image/YDLevelsTransformation.h"

#include <optional>

/// Stretches levels and strengthens colours; a pixel functor.
///
/// The levels result has its colours moved away from their luma: the more, the duller they are, so that what
/// is strong already does not clip. `amount` says both how strong that is and how far the result replaces the
/// original; 0 changes nothing.
class YDColorEnhancerTransformation
{
public:
    /// Without them levels stay as they are.
    void SetLevels(const YDLevelsTransformation& levels) { m_levels = levels; }
    /// Per cent, 0..100; values outside count as the nearest bound. 0 until it is set.
    void SetAmountData(int amount);

    void operator()(YDRGBA32i& pixel) const;

    /// The same for `count` pixels, with the vector instructions at hand.
    void ProcessRow(YDRGBA32i* row, int count) const;

private:
    std::optional<YDLevelsTransformation> m_levels;
    ColorEnhancerRule m_rule;
};
