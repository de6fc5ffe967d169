#pragma once

#include "image/YDRGBA32i.h"
#include "utilities/VectorKernel.h"

#include <QtGlobal>

#include <atomic>
#include <functional>

class BaseTransformation;
class QRect;
struct BlackAndWhiteRule;
struct ColorBalanceRule;
struct ColorEnhancerRule;
struct ColorRange;
struct ColorizeRule;
struct FillRule;
struct HueSaturationRule;
struct LinearGreyRule;
struct OverlayRule;
struct PhotoFilterRule;
struct SelectiveColorsRule;
struct TemperatureRule;

/// What the module of vector kernels exports, each function under its own name here; AVX2LIB::Find finds it.
///
/// The module declares by these types what it defines, so that nothing that differs from them compiles.
///
/// The row kernels choose the best instruction set at hand (AVX2, AVX-512, AVX-512 with VBMI) at every call
/// and give the same bytes with each of them. Rows may start at any pixel. Everything is safe from any
/// thread, for pixels that nobody else touches meanwhile, but for RestrictTargets().
struct VectorKernels
{
    /// The row form of a pixel rule: `count` pixels in place.
    template <class Rule>
    using RuleKernel = VectorKernel<void(YDRGBA32i* row, int count, const Rule* rule)>;

    /// Runs `transformation->ProcessRow` on every row of `area`, on all cores, the calling thread among them.
    ///
    /// `stride` counts the pixels from one row of `pixels` to the next; `area`, in pixels, lies inside the
    /// picture, and an empty one is nothing to do. `abort` is tested before each row, and no further row
    /// begins once it is set; `progress` is called after each row, from the thread that worked on it. Returns
    /// when all threads are done. May be called from a task of the global thread pool.
    static constexpr VectorKernel<void(YDRGBA32i* pixels, int stride, const QRect& area,
                                       BaseTransformation* transformation, const std::atomic<bool>& abort,
                                       std::function<void()> progress)>
        IterativeVectorProcess{"IterativeVectorProcess"};

    /// Maps blue, green and red of `count` pixels in place, each by its own table; alpha stays.
    ///
    /// `tables` holds 768 bytes: the 256 entries for blue, then those for green and for red.
    static constexpr VectorKernel<void(YDRGBA32i* row, int count, const quint8* tables)> MapChannelsRow{
        "MapChannelsRow"};

    /// Moves `count` pixels in place onto the ramp from one tone to another, as far as `amount` says: the
    /// rule of AverageTint; alpha stays.
    ///
    /// `weights` are those of red, green and blue: none negative, their sum 1000. `amount` in 0..255000;
    /// values outside count as the nearest bound.
    static constexpr VectorKernel<void(YDRGBA32i* row, int count, const int* weights, QRgb blackTone,
                                       QRgb whiteTone, int amount)>
        AverageTintAVX2{"AverageTintAVX2"};

    /// Makes each of `count` pixels white where its Luma709 is `level` or more, else black, in place; alpha
    /// stays. Any level: all are white from 0 down, and black above 255.
    static constexpr VectorKernel<void(YDRGBA32i* row, int count, int level)> ThresholdRow{"ThresholdRow"};

    /// Writes the Luma709 of each of `count` pixels to the bytes at `luma`.
    static constexpr VectorKernel<void(const YDRGBA32i* row, int count, quint8* luma)> LumaRow{"LumaRow"};

    /// The rule of the name on `count` pixels in place; alpha stays.
    static constexpr RuleKernel<BlackAndWhiteRule> BlackAndWhiteRow{"BlackAndWhiteRow"};
    static constexpr RuleKernel<LinearGreyRule> LinearGreyRow{"LinearGreyRow"};
    static constexpr RuleKernel<ColorBalanceRule> ColorBalanceRow{"ColorBalanceRow"};
    static constexpr RuleKernel<ColorizeRule> ColorizeRow{"ColorizeRow"};
    static constexpr RuleKernel<HueSaturationRule> HueSaturationRow{"HueSaturationRow"};
    static constexpr RuleKernel<PhotoFilterRule> PhotoFilterRow{"PhotoFilterRow"};
    static constexpr RuleKernel<SelectiveColorsRule> SelectiveColorsRow{"SelectiveColorsRow"};
    static constexpr RuleKernel<TemperatureRule> TemperatureRow{"TemperatureRow"};

    /// FillRule on `count` pixels in place, the alpha included.
    static constexpr RuleKernel<FillRule> FillRow{"FillRow"};

    /// ColorEnhancerRule on `count` pixels of `row`, in place, with their levelled copies; the rows must not
    /// overlap.
    static constexpr VectorKernel<void(const YDRGBA32i* levelled, YDRGBA32i* row, int count,
                                       const ColorEnhancerRule* rule)>
        EnhanceColorsRow{"EnhanceColorsRow"};

    /// YDBlend::YDSourceBySelection over `count` pixels of three rows, which must not overlap.
    static constexpr VectorKernel<void(const YDRGBA32i* source, YDRGBA32i* destination, const YDRGBA32i* mask,
                                       int count)>
        BlendBySelectionRow{"BlendBySelectionRow"};

    /// YDBlend::YDSourceOver<0> with `opacity`, 0..256, over `count` pixels of two rows, which must not
    /// overlap.
    static constexpr VectorKernel<void(const YDRGBA32i* source, YDRGBA32i* destination, int count,
                                       int opacity)>
        SourceOverRow{"SourceOverRow"};

    /// OverlayRule over `count` pixels of two rows, which must not overlap.
    static constexpr VectorKernel<void(const YDRGBA32i* over, YDRGBA32i* under, int count,
                                       const OverlayRule* rule)>
        OverlayRow{"OverlayRow"};

    /// Matches a square of 64 pixels by `height`, 0..64, rows: bit x of `bits[y]` becomes whether `range`
    /// holds the colour of pixel x of row y. Rows lie `stride` pixels apart and are matched for all their 64
    /// pixels. `next` is the first pixel of a square that will be worked on soon, which memory is asked for
    /// meanwhile; it may be null.
    static constexpr VectorKernel<void(const YDRGBA32i* pixels, int stride, int height,
                                       const ColorRange* range, quint64* bits, const YDRGBA32i* next)>
        MatchSquare{"MatchSquare"};

    /// FillRule on those pixels of such a square whose bits are set; the others are written to as well, but
    /// do not change.
    static constexpr VectorKernel<void(YDRGBA32i* pixels, int stride, int height, const quint64* bits,
                                       const FillRule* rule)>
        FillSquare{"FillSquare"};

    /// The instruction sets that the kernels may use now, a bit each, the best in the lowest bit. Diagnostic.
    static constexpr VectorKernel<qint64()> SupportedTargets{"SupportedTargets"};

    /// Confines the kernels to the instruction sets in `targets`, a selection of SupportedTargets(); 0 allows
    /// all of them again. Diagnostic: not while a kernel runs.
    static constexpr VectorKernel<void(qint64 targets)> RestrictTargets{"RestrictTargets"};

    /// Name of the instruction set with that one bit, such as "AVX2"; "Unknown" for any other number.
    /// Diagnostic.
    static constexpr VectorKernel<const char*(qint64 target)> TargetName{"TargetName"};
};
