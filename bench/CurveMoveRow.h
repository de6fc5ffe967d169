#pragma once

/// Registers the row that times one move of the mouse while a point of a curve with 16 points is dragged:
/// the curve built anew and the editor painted over its histogram.
void RegisterCurveMoveRow(int megapixels);
