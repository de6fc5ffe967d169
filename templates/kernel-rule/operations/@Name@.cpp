#include "operations/@Name@.h"

#include "RuleTask.h"
#include "image/@Name@Rule.h"
#include "image/PixelRuleTransformation.h"

operations::Task operations::MakeTask(const @Name@& settings)
{
    return RuleTask([settings] { return PixelRuleTransformation(@Name@Rule(settings.amount)); });
}
