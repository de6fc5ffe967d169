#pragma once

#include <QtGlobal>

/// Copies `bytes` bytes to memory that is not used again before much else was: past the caches where the
/// processor can, so that what the memory held is not read first. The two areas must not overlap.
void CopyPastCaches(const void* from, void* to, qsizetype bytes);
