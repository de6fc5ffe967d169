#include "gpu/GpuUse.h"

#include "core/KVApplication.h"

#include <QString>

#include <optional>

namespace {

constexpr const char* Variable = "ADJUSTMENTGUI_GPU";

std::optional<GpuUse> GpuUseOf(const QString& text)
{
    if (text == QLatin1String("off"))
        return GpuUse::Off;
    if (text == QLatin1String("auto"))
        return GpuUse::Auto;
    if (text == QLatin1String("any"))
        return GpuUse::Any;
    return std::nullopt;
}

} // namespace

GpuUse ChosenGpuUse()
{
    const bool isInEnvironment = !qEnvironmentVariableIsEmpty(Variable);
    const QString text =
        isInEnvironment ? qEnvironmentVariable(Variable).trimmed().toLower() : KVApplication::GetGpuUse();
    const std::optional<GpuUse> use = GpuUseOf(text);
    if (!use)
        qWarning("%s is \"%s\", which is none of off, auto and any: taken for auto",
                 isInEnvironment ? Variable : "The setting gpu/use", qUtf8Printable(text));
    return use.value_or(GpuUse::Auto);
}
