#pragma once

#include "image/BaseTransformation.h"

#include <type_traits>
#include <utility>

/// Lets a plain pixel functor run where an iterative transformation is asked for.
///
/// `F` is copyable and has `operator()(YDRGBA32i&) const`, and for the vector path either
/// `ProcessRow(YDRGBA32i*, int) const` or the byte form `operator()(unsigned char* pixels, bool aligned)
/// const` for one block of eight pixels (32 bytes; `aligned` when the address is a multiple of 32). All of
/// them give the same bytes.
template <class F>
class YDIterativeAdjustmentTransformation : public BaseTransformation
{
public:
    explicit YDIterativeAdjustmentTransformation(const F& functor) : m_functor(functor) {}

    void ProcessPixel(qsizetype index) const { m_functor(m_pixels[index]); }

    void ProcessRow(YDRGBA32i* row, int count) const override
    {
        if constexpr (HasRowForm<F>::value)
            m_functor.ProcessRow(row, count);
        else
            ProcessBlocks(row, count);
    }

private:
    static constexpr int BlockPixels = 8;
    static constexpr quintptr BlockBytes = BlockPixels * sizeof(YDRGBA32i);

    template <class G, class = void>
    struct HasRowForm : std::false_type
    {};
    template <class G>
    struct HasRowForm<G, std::void_t<decltype(std::declval<const G&>().ProcessRow(
                             std::declval<YDRGBA32i*>(), std::declval<int>()))>> : std::true_type
    {};

    void ProcessBlocks(YDRGBA32i* row, int count) const
    {
        int x = 0;
        // Rows are aligned as their pixels are, so every block of one row is aligned or none is.
        const bool aligned = reinterpret_cast<quintptr>(row) % BlockBytes == 0;
        for (; x + BlockPixels <= count; x += BlockPixels)
            m_functor(reinterpret_cast<unsigned char*>(row + x), aligned);
        for (; x < count; ++x)
            m_functor(row[x]);
    }

    F m_functor;
};
