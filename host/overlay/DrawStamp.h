#pragma once

#include <QString>

class OverlayCanvas;
struct Stamp;

/// Lays the stamp onto the picture: inside the margins, scaled down only if it does not fit there, and placed
/// by its alignment. Empty when that is done, or when nothing is to be drawn; otherwise says, for people, why
/// it could not be, and the picture is as it was.
///
/// Uses all cores. Any thread, several pictures at once.
[[nodiscard]] QString DrawStamp(const Stamp& stamp, const OverlayCanvas& canvas);
