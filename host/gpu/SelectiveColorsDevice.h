#pragma once

#include "image/KVImage.h"

#include <QString>

#include <atomic>

struct SelectiveColorsJob;

/// Something beside the processor that can adjust pictures.
///
/// Used by one thread at a time, not always the one that made it.
class SelectiveColorsDevice
{
public:
    virtual ~SelectiveColorsDevice() = default;

    /// For people.
    virtual QString Name() const = 0;

    /// Gets ready for what comes, as far as that takes time. Empty text: it is; else why not.
    [[nodiscard]] virtual QString Prepare() = 0;

    /// Writes the adjusted source of `job` to `result`, a picture of the same size. Stops early once `abort`
    /// is set. Empty text: done, or stopped; else why not, and `result` holds anything.
    [[nodiscard]] virtual QString Adjust(const SelectiveColorsJob& job, const RGBA32iImage& result,
                                         const std::atomic<bool>& abort) = 0;

    /// Lets go of the pictures that are kept between jobs.
    virtual void ReleasePictures() = 0;

    /// Lets go of everything, so that the next job begins afresh.
    virtual void Reset() = 0;
};
