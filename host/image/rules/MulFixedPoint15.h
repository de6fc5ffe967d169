#pragma once

/// `a * b / 32768`, rounded to nearest, halves up: what vector instructions multiply 16-bit numbers by.
///
/// Both in -32767..32767, so that the vectors give the same.
constexpr int MulFixedPoint15(int a, int b) { return (a * b + (1 << 14)) >> 15; }
