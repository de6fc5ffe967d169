#pragma once

#include "image/KVImage.h"

/// The yardstick: every byte of `image` plus one, saturating, in place, on all cores, with AVX2 where there
/// is AVX2 and without prefetching. What memory allows a pass that reads and writes a picture.
void RunReferencePass(const RGBA32iImage& image);
