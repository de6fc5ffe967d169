#include "operations/SelectiveColors.h"

#include "RuleTask.h"
#include "image/KVIterativeSelectiveColorsTransformation.h"

using operations::SelectiveColors;

SelectiveColors::SelectiveColors(const SelectiveParamsList& params) : mode(params.mode)
{
    for (int i = 0; i < SelectiveParamsList::Ranges; ++i) {
        const SelectiveParams target = params.targets.value(i);
        targets[std::size_t(i)] = {target.cyan, target.magenta, target.yellow, target.black};
    }
}

SelectiveParamsList SelectiveColors::List() const
{
    SelectiveParamsList params;
    params.targets.clear();
    for (const Inks& inks : targets)
        params.targets.append({inks[0], inks[1], inks[2], inks[3]});
    params.mode = Mode(mode);
    return params;
}

bool SelectiveColors::Read(QDataStream& stream)
{
    SelectiveParamsList params;
    const bool isWhole = params.Read(stream);
    if (isWhole)
        *this = SelectiveColors(params);
    return isWhole;
}

bool SelectiveColors::Write(QDataStream& stream) const { return List().Write(stream); }

operations::Task operations::MakeTask(const SelectiveColors& settings) { return MakeTask(settings.List()); }

operations::Task operations::MakeTask(const SelectiveParamsList& settings)
{
    return RuleTask([settings] { return KVIterativeSelectiveColorsTransformation(settings); });
}
