#include "gpu/OpenClLibrary.h"

#include <QLibrary>

namespace {

/// Puts the function called `name` where it belongs; the name of one that is missing goes to `missing`.
template <class Function>
void Find(QLibrary& library, const char* name, Function& function, QString& missing)
{
    function = reinterpret_cast<Function>(library.resolve(name));
    if (!function)
        missing = QLatin1String(name);
}

void FindFunctions(QLibrary& library, OpenClLibrary& functions, QString& missing)
{
    Find(library, "clBuildProgram", functions.buildProgram, missing);
    Find(library, "clCreateBuffer", functions.createBuffer, missing);
    Find(library, "clCreateCommandQueue", functions.createCommandQueue, missing);
    Find(library, "clCreateContext", functions.createContext, missing);
    Find(library, "clCreateKernel", functions.createKernel, missing);
    Find(library, "clCreateProgramWithSource", functions.createProgramWithSource, missing);
    Find(library, "clEnqueueMapBuffer", functions.enqueueMapBuffer, missing);
    Find(library, "clEnqueueNDRangeKernel", functions.enqueueNDRangeKernel, missing);
    Find(library, "clEnqueueReadBuffer", functions.enqueueReadBuffer, missing);
    Find(library, "clEnqueueUnmapMemObject", functions.enqueueUnmapMemObject, missing);
    Find(library, "clEnqueueWriteBuffer", functions.enqueueWriteBuffer, missing);
    Find(library, "clFinish", functions.finish, missing);
    Find(library, "clFlush", functions.flush, missing);
    Find(library, "clGetDeviceIDs", functions.getDeviceIds, missing);
    Find(library, "clGetDeviceInfo", functions.getDeviceInfo, missing);
    Find(library, "clGetPlatformIDs", functions.getPlatformIds, missing);
    Find(library, "clGetProgramBuildInfo", functions.getProgramBuildInfo, missing);
    Find(library, "clReleaseCommandQueue", functions.releaseCommandQueue, missing);
    Find(library, "clReleaseContext", functions.releaseContext, missing);
    Find(library, "clReleaseEvent", functions.releaseEvent, missing);
    Find(library, "clReleaseKernel", functions.releaseKernel, missing);
    Find(library, "clReleaseMemObject", functions.releaseMemObject, missing);
    Find(library, "clReleaseProgram", functions.releaseProgram, missing);
    Find(library, "clSetKernelArg", functions.setKernelArg, missing);
    Find(library, "clWaitForEvents", functions.waitForEvents, missing);
}

} // namespace

QString OpenClLibrary::DefaultFileName()
{
#if defined(Q_OS_WIN)
    return QStringLiteral("OpenCL.dll");
#elif defined(Q_OS_MACOS)
    return QStringLiteral("/System/Library/Frameworks/OpenCL.framework/OpenCL");
#else
    return QStringLiteral("libOpenCL.so.1"); // the name without a version comes with the headers only
#endif
}

std::shared_ptr<const OpenClLibrary> OpenClLibrary::Load(const QString& fileName, QString& problem)
{
    QLibrary library(fileName);
    library.setLoadHints(QLibrary::PreventUnloadHint); // drivers keep threads that run its code
    if (!library.load()) {
        problem = library.errorString();
        return nullptr;
    }
    const auto functions = std::make_shared<OpenClLibrary>();
    QString missing;
    FindFunctions(library, *functions, missing);
    if (!missing.isEmpty()) {
        problem = QStringLiteral("%1 has no %2").arg(fileName, missing);
        return nullptr;
    }
    return functions;
}
