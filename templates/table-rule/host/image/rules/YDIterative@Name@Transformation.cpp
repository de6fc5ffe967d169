#include "image/YDIterative@Name@Transformation.h"

#include <algorithm>

YDIterative@Name@Transformation::YDIterative@Name@Transformation(int amount)
{
    const double share = std::clamp(amount, 0, 100) / 100.0;
    Table table;
    for (int v = 0; v < 256; ++v)
        table[static_cast<std::size_t>(v)] = ToLevel(v + (255 - 2 * v) * share);
    SetTable(table);
}
