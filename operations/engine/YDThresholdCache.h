#pragma once

#include "AutomaticInputRange.h"
#include "adjustmentgui_operations_export.h"
#include "image/KVImage.h"

#include <array>
#include <atomic>
#include <mutex>
#include <optional>

/// The bounds of what a picture's channels hold, counted once and then remembered.
///
/// Jobs share one, and whoever is done first counts for all; safe from any thread. It is never emptied: the
/// widget takes a new one for a new picture, and jobs keep theirs.
class ADJUSTMENTGUI_OPERATIONS_EXPORT YDThresholdCache
{
public:
    /// Of red, green, blue, and of luma as what is common to them.
    using Thresholds = std::array<LevelRange, 4>;

    /// What was counted first; the first call counts `picture`. Nothing, and nothing remembered, where
    /// `abort`, which may be null, was set meanwhile.
    std::optional<Thresholds> Of(const RGBA32iImage& picture, const std::atomic<bool>* abort);

private:
    std::optional<Thresholds> Known();

    std::mutex m_lock; ///< not held while somebody counts, so that nobody waits in a task for another's count
    std::optional<Thresholds> m_thresholds;
};
