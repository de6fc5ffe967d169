#include "image/YDIterativeCurvesTransformation.h"

#include "image/YDCurvesTransformation.h"

#include <algorithm>

YDIterativeCurvesTransformation::YDIterativeCurvesTransformation(const QVector<QPoint>* curves, int strength)
{
    std::array<Table, 4> tables;
    for (std::size_t channel = 0; channel < tables.size(); ++channel) {
        const YDCurvesTransformation::Levels levels = YDCurvesTransformation::LevelsOf(curves[channel]);
        std::transform(levels.begin(), levels.end(), tables[channel].begin(), &ToLevel);
    }
    SetTables(tables, strength);
}
