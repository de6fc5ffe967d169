#pragma once

struct BenchAdjustment;

/// A row that moves a control of the adjustment's dialog for some seconds over a picture whose preview a
/// document view shows, and reports how long the GUI thread's event loop left a timer of one millisecond
/// waiting: median, 99th percentile and longest gap. Also how many previews were shown, and whether the
/// last one equals ConvertImage with the same settings byte for byte ("same": 1 if so).
void RegisterEventLoopGaps(const BenchAdjustment& adjustment, int megapixels);
