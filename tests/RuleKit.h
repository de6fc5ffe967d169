#pragma once

#include "image/YDRGBA32i.h"

#include <QTest>

#include <array>

/// What is checked of every rule that maps each channel by a table.
namespace RuleKit {

/// The rule for one level, by the pixel form.
template <class Rule>
quint8 LevelOf(Rule rule, quint8 level)
{
    YDRGBA32i pixel(level, level, level, 17);
    rule.SetProcessingBuffer(&pixel);
    rule.ProcessPixel(0);
    return pixel.g;
}

/// `rule`, which changes some colour, leaves the alpha.
template <class Rule>
void CheckThatAlphaStays(Rule rule)
{
    const YDRGBA32i before(10, 120, 230, 40);
    YDRGBA32i pixel = before;
    rule.SetProcessingBuffer(&pixel);
    rule.ProcessPixel(0);
    QCOMPARE(int(pixel.a), 40);
    QVERIFY(pixel != before);
}

/// The row form gives the bytes of the pixel form, for each level of each channel.
template <class Rule>
void CheckThatRowsEqualPixels(Rule rule)
{
    std::array<YDRGBA32i, 256> row;
    for (int v = 0; v < 256; ++v)
        row[std::size_t(v)] = YDRGBA32i(quint8(v), quint8(255 - v), quint8(v / 2), quint8(v));
    std::array<YDRGBA32i, 256> pixels = row;
    rule.ProcessRow(row.data(), int(row.size()));
    rule.SetProcessingBuffer(pixels.data());
    for (qsizetype i = 0; i < qsizetype(pixels.size()); ++i)
        rule.ProcessPixel(i);
    QVERIFY(row == pixels);
}

} // namespace RuleKit
