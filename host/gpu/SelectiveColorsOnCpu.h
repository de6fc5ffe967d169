#pragma once

#include "image/KVImage.h"

#include <atomic>

struct SelectiveColorsJob;

/// Writes the adjusted source of `job` to `result`, a picture of the same size, on all cores. Returns whether
/// it came to the end before `abort` was set.
bool AdjustSelectiveColorsOnCpu(const SelectiveColorsJob& job, const RGBA32iImage& result,
                                const std::atomic<bool>& abort);
