#pragma once

/// All of it, in per cent.
constexpr int FullPercent = 100;
