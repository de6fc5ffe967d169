#pragma once

#include "SanitizerShare.h"
#include "image/BaseTransformation.h"
#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

#include <QString>

#include <algorithm>
#include <initializer_list>
#include <random>
#include <type_traits>
#include <vector>

/// Compares the row form of a pixel rule with its pixel form.
///
///     QCOMPARE(KernelCheck::Difference(VectorKernels::ThresholdRow, rule), QString());
namespace KernelCheck {

using Row = std::vector<YDRGBA32i>;

/// The instruction sets that the kernels may use here, a bit each; none without the module.
inline std::vector<qint64> Targets()
{
    const auto supported = AVX2LIB::Find(VectorKernels::SupportedTargets);
    std::vector<qint64> targets;
    for (qint64 left = supported ? supported() : 0; left != 0; left &= left - 1)
        targets.push_back(left & -left);
    return targets;
}

/// Confines the kernels to one instruction set while it lives.
class Restriction
{
public:
    explicit Restriction(qint64 target) { Restrict(target); }
    ~Restriction() { Restrict(0); }
    Q_DISABLE_COPY(Restriction)

private:
    static void Restrict(qint64 targets)
    {
        static const auto restrict = AVX2LIB::Find(VectorKernels::RestrictTargets);
        if (restrict)
            restrict(targets);
    }
};

inline QString NameOf(qint64 target)
{
    const auto name = AVX2LIB::Find(VectorKernels::TargetName);
    return name ? QString::fromLatin1(name(target)) : QString();
}

/// `count` pixels of any bytes, alpha included.
inline Row RandomRow(int count, std::minstd_rand& random)
{
    Row row(static_cast<std::size_t>(count));
    for (YDRGBA32i& pixel : row)
        pixel = YDRGBA32i(quint8(random() >> 8), quint8(random() >> 8), quint8(random() >> 8),
                          quint8(random() >> 8));
    return row;
}

/// Every grey, every corner, edge and face of the colour cube in steps of 15, with alphas of all sorts.
inline Row ColourCube()
{
    constexpr int Step = 15;
    Row row;
    for (int v = 0; v < 256; ++v)
        row.emplace_back(quint8(v), quint8(v), quint8(v), quint8(255 - v));
    for (int r = 0; r < 256; r += Step)
        for (int g = 0; g < 256; g += Step)
            for (int b = 0; b < 256; b += Step)
                row.emplace_back(quint8(b), quint8(g), quint8(r), quint8(r + 3 * g + 7 * b));
    return row;
}

template <class Rule>
void ApplyToPixel(Rule& rule, YDRGBA32i& pixel)
{
    if constexpr (std::is_base_of_v<BaseTransformation, Rule>) {
        rule.SetProcessingBuffer(&pixel);
        rule.ProcessPixel(0);
    } else {
        rule(pixel);
    }
}

/// What the row form makes of the `count` pixels of `before` from `first` on, unlike the pixel form; empty
/// if it does the same and leaves the pixels around them alone.
template <class Rule>
QString RowDifference(Rule rule, const Row& before, int first, int count)
{
    Row expected = before;
    for (int x = first; x < first + count; ++x)
        ApplyToPixel(rule, expected[std::size_t(x)]);
    Row actual = before;
    rule.ProcessRow(actual.data() + first, count);
    const auto [wrong, right] = std::mismatch(actual.begin(), actual.end(), expected.begin());
    if (wrong == actual.end())
        return {};
    const auto index = wrong - actual.begin();
    const auto text = [](const YDRGBA32i& pixel) { return QString::number(QRgb(pixel), 16); };
    return QStringLiteral("argb %1 became %2 instead of %3 as pixel %4 of %5")
        .arg(text(before[std::size_t(index)]), text(*wrong), text(*right))
        .arg(index - first)
        .arg(count);
}

/// Rows of every length from 0 to 300 that begin at every place of a cache line, then the colour cube, then
/// random pixels.
template <class Rule>
QString DifferenceOnTarget(const Rule& rule, int randomPixels)
{
    constexpr int LongestRow = 300;
    constexpr int MostOffset = 15;
    constexpr int GuardPixels = 4;
    std::minstd_rand random(20);
    const Row pool = RandomRow(MostOffset + LongestRow + GuardPixels, random);
    for (int count = 0; count <= LongestRow; ++count) {
        for (int offset = 0; offset <= MostOffset; ++offset) {
            const Row row(pool.begin(), pool.begin() + offset + count + GuardPixels);
            const QString difference = RowDifference(rule, row, offset, count);
            if (!difference.isEmpty())
                return difference;
        }
    }
    for (const Row& row : {ColourCube(), RandomRow(randomPixels / SanitizerShare, random)}) {
        const QString difference = RowDifference(rule, row, 0, int(row.size()));
        if (!difference.isEmpty())
            return difference;
    }
    return {};
}

/// How the row form of `rule`, a transformation or a functor with ProcessRow(), first differs from its pixel
/// form with any instruction set; empty if it never does. `kernel` is what the row form ought to use. On a
/// processor without AVX2 the row form has no kernel to differ by.
template <class Kernel, class Rule>
QString Difference(const VectorKernel<Kernel>& kernel, const Rule& rule, int randomPixels = 1000000)
{
    if (!__builtin_cpu_supports("avx2"))
        return DifferenceOnTarget(rule, randomPixels);
    if (!AVX2LIB::Find(kernel))
        return QStringLiteral("the module lacks the kernel");
    for (const qint64 target : Targets()) {
        const Restriction restriction(target);
        const QString difference = DifferenceOnTarget(rule, randomPixels);
        if (!difference.isEmpty())
            return NameOf(target) + QStringLiteral(": ") + difference;
    }
    return {};
}

} // namespace KernelCheck
