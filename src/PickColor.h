#pragma once

#include "adjustmentgui_export.h"

#include <Qt>

#include <functional>

class QColor;
class QString;
class QWidget;

using ColorTaker = std::function<void(const QColor&)>;

/// Lets the user pick a colour in a modal dialog titled `title` that begins with `color`, and returns when it
/// is closed. `flags` are the dialog's window flags where it shall be another kind of window.
///
/// `accept` gets the dialog's colour if the user accepts it. `preview`, if there is one, gets every colour on
/// the way, and `color` again if the user cancels. A panel whose picture follows the dialog hands in one
/// function as both, which takes a colour that differs from the present one (IsSameColor()), shows it and
/// announces it: accepting or cancelling without having picked then announces nothing, accepting what is
/// previewed already neither, and cancelling after picks announces the old colour once.
///
/// `owner` may be destroyed meanwhile; neither function is called then or later.
ADJUSTMENTGUI_EXPORT void PickColor(QWidget* owner, const QString& title, const QColor& color,
                                    const ColorTaker& accept, const ColorTaker& preview = {},
                                    Qt::WindowFlags flags = {});
