#include "gpu/OpenClProblem.h"

#include <algorithm>
#include <iterator>

namespace {

struct NamedStatus
{
    cl_int status;
    const char* name;
};

constexpr NamedStatus Named[] = {
    {CL_DEVICE_NOT_FOUND, "no such device"},
    {CL_DEVICE_NOT_AVAILABLE, "the device is not available"},
    {CL_COMPILER_NOT_AVAILABLE, "the driver has no compiler"},
    {CL_MEM_OBJECT_ALLOCATION_FAILURE, "the device has no memory left"},
    {CL_OUT_OF_RESOURCES, "the device is out of resources"},
    {CL_OUT_OF_HOST_MEMORY, "no memory left"},
    {CL_BUILD_PROGRAM_FAILURE, "the program cannot be built"},
    {CL_MAP_FAILURE, "the memory cannot be mapped"},
    {CL_INVALID_BUFFER_SIZE, "the buffer is too large"},
    {-1001, "no driver is installed"}, // CL_PLATFORM_NOT_FOUND_KHR, of an extension's header
};

} // namespace

QString OpenClProblem(const char* call, cl_int status)
{
    if (status == CL_SUCCESS)
        return {};
    const auto* const named =
        std::find_if(std::begin(Named), std::end(Named),
                     [status](const NamedStatus& known) { return known.status == status; });
    const QString name = named == std::end(Named) ? QStringLiteral("error") : QLatin1String(named->name);
    return QStringLiteral("%1: %2 (%3)").arg(QLatin1String(call), name).arg(status);
}
