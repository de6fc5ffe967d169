#pragma once

#include "image/KVImage.h"
#include "image/RulePass.h"

#include <QRect>

#include <array>
#include <atomic>
#include <functional>
#include <optional>

class QImage;

/// How many pixels of a picture have each level of red, green, blue and luma (Luma709). Alpha takes no part.
struct ChannelHistograms
{
    static constexpr int Levels = 256;
    using Table = std::array<qint64, Levels>;

    Table red{};
    Table green{};
    Table blue{};
    Table luma{};
    qint64 pixels = 0; ///< the sum of each table

    /// Counts the part of `area` that lies inside `picture`, on all cores. Nothing once `abort`, which may be
    /// null, is set: that is tested before each row. `onRow`, if any, is called on any thread once row `y` is
    /// counted. What `rule`, if any, makes of the pixels is counted instead of them; the picture stays as it
    /// is. May be called from a task of the global thread pool.
    static std::optional<ChannelHistograms> Of(const RGBA32iImage& picture, const QRect& area,
                                               const std::atomic<bool>* abort = nullptr,
                                               const std::function<void(int y)>& onRow = {},
                                               const RulePass::Rule& rule = {});

    /// The same for the whole of an image of any format. One that does not hold its pixels as a picture does
    /// is converted first; nothing where the memory for that is not to be had.
    static std::optional<ChannelHistograms> Of(const QImage& image, const std::atomic<bool>* abort = nullptr);
};
