#pragma once

/// Of what a disabled control shows of its value.
constexpr double DisabledOpacity = 0.4;
