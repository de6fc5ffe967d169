#pragma once

#include "image/PixelRuleTransformation.h"
#include "image/SelectiveColorsRule.h"

/// Adds ink to nine ranges of a picture's colours or takes ink away, from each range as much as is wanted.
/// Alpha stays.
class KVIterativeSelectiveColorsTransformation : public PixelRuleTransformation<SelectiveColorsRule>
{
public:
    /// Any list: SelectiveColorsRule says how.
    explicit KVIterativeSelectiveColorsTransformation(const SelectiveParamsList& params)
        : PixelRuleTransformation<SelectiveColorsRule>(SelectiveColorsRule(params.targets, params.mode))
    {}
};
