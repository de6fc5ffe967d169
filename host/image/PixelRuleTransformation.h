#pragma once

#include "image/BaseTransformation.h"
#include "utilities/AVX2LIB.h"

/// A rule that mixes the channels of a pixel.
///
/// `Rule` is copyable and holds the constants of one job; `void operator()(YDRGBA32i&) const` changes a pixel
/// by them in whole numbers, and `Rule::Kernel` names the function of the vector module that does the same to
/// `count` pixels: `void (YDRGBA32i* row, int count, const Rule* rule)`.
template <class Rule>
class PixelRuleTransformation : public BaseTransformation
{
public:
    explicit PixelRuleTransformation(const Rule& rule) : m_rule(rule) {}

    void ProcessPixel(qsizetype index) const { m_rule(m_pixels[index]); }

    void ProcessRow(YDRGBA32i* row, int count) const override
    {
        using Kernel = void (*)(YDRGBA32i*, int, const Rule*);
        static const auto kernel = AVX2LIB::Find<Kernel>(Rule::Kernel);
        if (kernel) {
            kernel(row, count, &m_rule);
            return;
        }
        for (int x = 0; x < count; ++x)
            m_rule(row[x]);
    }

private:
    Rule m_rule;
};
