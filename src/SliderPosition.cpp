#include "SliderPosition.h"

#include <algorithm>
#include <cmath>
#include <limits>

int SliderPosition(double value, int scale)
{
    const double position = value * scale + 0.001;
    if (std::isnan(position))
        return 0;
    return static_cast<int>(std::clamp(position, double(std::numeric_limits<int>::min()),
                                       double(std::numeric_limits<int>::max())));
}
