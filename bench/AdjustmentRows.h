#pragma once

struct BenchAdjustment;

/// The rows that every adjustment has: the bare rule along each road and, where it has a control to move,
/// ConvertImage and the preview.
void RegisterAdjustmentRows(const BenchAdjustment& adjustment, int megapixels);
