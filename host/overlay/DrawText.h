#pragma once

#include <QString>

class OverlayCanvas;
struct TextOverlay;

/// Writes the text onto the picture: the area inside the margins is parted into equal cells, and each holds
/// the text in its middle, turned about it. Where texts reach into each other they are one: no part is drawn
/// twice. What reaches into the margins is cut off. Empty when that is done, or when nothing is to be drawn;
/// otherwise says, for people, why it could not be, and the picture is as it was.
///
/// Uses all cores. Any thread, several pictures at once.
[[nodiscard]] QString DrawText(const TextOverlay& overlay, const OverlayCanvas& canvas);
