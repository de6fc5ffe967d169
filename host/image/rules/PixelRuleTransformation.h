#pragma once

#include "image/BaseTransformation.h"
#include "utilities/AVX2LIB.h"

/// `count` pixels in place by a rule that mixes the channels of a pixel, with the vector instructions at
/// hand.
///
/// `Rule` holds the constants of one job; `void operator()(YDRGBA32i&) const` changes a pixel by them, and
/// `Rule::Kernel`, a VectorKernels::RuleKernel<Rule>, does the same to many.
template <class Rule>
void ApplyRuleToRow(const Rule& rule, YDRGBA32i* row, int count)
{
    static const auto kernel = AVX2LIB::Find(Rule::Kernel);
    if (kernel) {
        kernel(row, count, &rule);
        return;
    }
    for (int x = 0; x < count; ++x)
        rule(row[x]);
}

/// A transformation that is one such rule, a copyable one.
template <class Rule>
class PixelRuleTransformation : public BaseTransformation
{
public:
    explicit PixelRuleTransformation(const Rule& rule) : m_rule(rule) {}

    void ProcessPixel(qsizetype index) const { m_rule(m_pixels[index]); }
    void ProcessRow(YDRGBA32i* row, int count) const override { ApplyRuleToRow(m_rule, row, count); }

private:
    Rule m_rule;
};
