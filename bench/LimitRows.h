#pragma once

/// Rows that no adjustment beats: a copy, the reference pass itself, and what adjustments share.
void RegisterLimitRows(int megapixels);
