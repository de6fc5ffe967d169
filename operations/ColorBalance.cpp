#include "operations/ColorBalance.h"

#include "RuleTask.h"
#include "image/YDIterativeColorBalanceTransformation.h"

operations::Task operations::MakeTask(const ColorBalance& settings)
{
    return RuleTask([settings] {
        return YDIterativeColorBalanceTransformation(settings.cyanRed.data(), settings.magentaGreen.data(),
                                                     settings.yellowBlue.data());
    });
}
