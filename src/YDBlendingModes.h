#pragma once

#include "adjustmentgui_export.h"
#include "image/KVCompositionMode.h"

class QComboBox;

/// Appends the texts of all blending modes that panels offer.
ADJUSTMENTGUI_EXPORT void FillBlendingModes(QComboBox& box);

/// The mode at an index of such a box; the normal one where there is none.
ADJUSTMENTGUI_EXPORT KVCompositionMode BlendingModeAt(int index);

/// The index of a stored mode, which may be any number; that of the normal one if no mode has it.
ADJUSTMENTGUI_EXPORT int BlendingIndexOf(unsigned mode);
