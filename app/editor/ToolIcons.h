#pragma once

#include <QIcon>

/// The editor's own icons: lines in the palette's text colour, drawn anew for every size, so that they are
/// crisp on every screen and right on light and dark.
namespace ToolIcons {

enum class Kind
{
    Open,
    Save,
    Undo,
    Redo,
    Move,
    Rectangle,
    Ellipse,
    ZoomIn,
    ZoomOut,
    ZoomFit,
    ZoomActual,
    Compare,
    Sliders,
    Close,
    Detach,
};

QIcon Icon(Kind kind);

/// The picture of the program itself.
QIcon Application();

} // namespace ToolIcons
