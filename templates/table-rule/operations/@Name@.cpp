#include "operations/@Name@.h"

#include "RuleTask.h"
#include "image/YDIterative@Name@Transformation.h"

operations::Task operations::MakeTask(const @Name@& settings)
{
    return RuleTask([settings] { return YDIterative@Name@Transformation(settings.amount); });
}
