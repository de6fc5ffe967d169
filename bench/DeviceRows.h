#pragma once

/// Selective colours on the graphics device, from the request to the answer, and the same work on the
/// processor. No rows where there is no device; ADJUSTMENTGUI_GPU chooses what counts as one.
void RegisterDeviceRows(int megapixels);
