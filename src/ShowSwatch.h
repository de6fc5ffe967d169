#pragma once

#include "adjustmentgui_export.h"

class QAbstractButton;
class QColor;

/// Gives the button an icon of one pixmap, of its icon size, that is filled with `color`. What tells a colour
/// from a button of the same one is the button's frame.
ADJUSTMENTGUI_EXPORT void ShowSwatch(QAbstractButton* button, const QColor& color);
