#include "image/SelectiveColorsRule.h"

#include "image/Percent.h"

#include <cmath>

namespace {

double Share(float percentage)
{
    return std::isnan(percentage)
               ? 0.0
               : std::clamp(double(percentage), -double(FullPercent), double(FullPercent)) / FullPercent;
}

} // namespace

SelectiveColorsRule::SelectiveColorsRule(const QList<SelectiveParams>& targets, Mode mode)
    : shift{}, relative(mode == SelectiveParamsList::Relative)
{
    const int count = std::min(targets.size(), SelectiveParamsList::Ranges);
    for (int i = 0; i < count; ++i) {
        const SelectiveParams& params = targets.at(i);
        const float inks[Inks] = {params.cyan, params.magenta, params.yellow};
        for (int ink = 0; ink < Inks; ++ink)
            shift[i][ink] =
                static_cast<qint32>(std::lround((Share(inks[ink]) + Share(params.black)) * FullShift));
    }
}
