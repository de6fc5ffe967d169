#pragma once

constexpr double MetersPerInch = 0.0254;
constexpr double CentimetersPerMeter = 100.0;
