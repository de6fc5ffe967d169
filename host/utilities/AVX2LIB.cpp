#include "utilities/AVX2LIB.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

#include <memory>

#if defined(Q_OS_UNIX)
#include <dlfcn.h>
#endif

namespace {

bool ProcessorHasAvx2()
{
#if (defined(__x86_64__) || defined(__i386__)) && defined(__GNUC__)
    return __builtin_cpu_supports("avx2");
#else
    return false;
#endif
}

/// Folder of the library that this code is part of: the module lies in a folder beside it, in the build
/// tree as in an installation.
QString LibraryFolder()
{
#if defined(Q_OS_UNIX)
    static const int anchor = 0;
    Dl_info info{};
    if (dladdr(&anchor, &info) != 0 && info.dli_fname)
        return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
#endif
    return QDir::currentPath();
}

} // namespace

AVX2LIB::AVX2LIB(const QString& path) : m_library(path)
{
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
}

AVX2LIB* AVX2LIB::Instance()
{
    static const std::unique_ptr<AVX2LIB> instance = []() -> std::unique_ptr<AVX2LIB> {
        if (!ProcessorHasAvx2() || qgetenv("ADJUSTMENTGUI_SIMD") == "off")
            return nullptr;
        const QString path = LibraryFolder() + QStringLiteral("/adjustmentgui/libadjustmentgui-simd.so");
        std::unique_ptr<AVX2LIB> module(new AVX2LIB(path));
        if (!module->m_library.load()) {
            qWarning("Working without vector kernels: %s", qPrintable(module->m_library.errorString()));
            return nullptr;
        }
        return module;
    }();
    return instance.get();
}

QFunctionPointer AVX2LIB::Resolve(const char* name) { return m_library.resolve(name); }
