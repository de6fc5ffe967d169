#pragma once

/// The zoom factors that keys, buttons and the wheel step through; 1 is 100 %.
namespace ZoomSteps {

constexpr double Smallest = 0.01;
constexpr double Largest = 64.0;

/// `zoom` inside the range; a value that is no number counts as 1.
double Bounded(double zoom);

/// The next step above `zoom`; Largest from there on.
double Above(double zoom);

/// The next step below `zoom`; Smallest from there on.
double Below(double zoom);

} // namespace ZoomSteps
