#pragma once

/// Where a slider stands that shows `value` in steps of 1 / `scale`.
///
/// That is the integer part, toward zero, of `value * scale + 0.001`: the thousandth keeps values such as
/// 0.0003, which binary fractions miss by a hair, from landing one step low, and has whole negative steps
/// land one step nearer to zero. Bounded to what an int holds; 0 for a value that is not a number.
int SliderPosition(double value, int scale);
