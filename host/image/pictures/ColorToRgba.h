#pragma once

#include <QRgb>

class QColor;

/// The colour as a packed pixel, not premultiplied: what QColor::rgba() gives, and defined for every colour.
///
/// A colour with floating-point components, as a stored one may have, can hold values far outside 0..1, which
/// count as the nearest bound, and such that are no number, which count as 0. Qt would convert them to
/// integers as they are. A colour of a model that there is not, as a stored one may be, is black with its
/// alpha.
[[nodiscard]] QRgb ColorToRgba(const QColor& color);
