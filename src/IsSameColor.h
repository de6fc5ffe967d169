#pragma once

class QColor;

/// Whether two colours are equal. Other than by QColor's own operator, a colour whose components are no
/// numbers, as a stored one may have, equals itself.
[[nodiscard]] bool IsSameColor(const QColor& a, const QColor& b);
