#pragma once

#include "adjustmentgui_export.h"

class QAbstractButton;
class QColor;

/// Gives the button an icon of its icon size that is filled with `color`, with a thin line around it, so that
/// a colour shows on a button of the same one. It is crisp on screens of one or two pixels a point.
ADJUSTMENTGUI_EXPORT void ShowSwatch(QAbstractButton* button, const QColor& color);
