#pragma once

struct BenchAdjustment;

/// The rows that every adjustment has: the bare rule along each road, ConvertImage, the preview.
void RegisterAdjustmentRows(const BenchAdjustment& adjustment, int megapixels);
