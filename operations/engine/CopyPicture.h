#pragma once

#include "image/KVImage.h"

#include <atomic>

/// A deep copy of `source`, made on all cores; empty where `abort`, which may be null, was set meanwhile or
/// there is no memory.
[[nodiscard]] RGBA32iImage CopyPicture(const RGBA32iImage& source, const std::atomic<bool>* abort);
