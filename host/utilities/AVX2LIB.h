#pragma once

#include <QLibrary>
#include <QtGlobal>

/// The module of vector kernels, loaded once per process where the processor has AVX2.
///
/// Kernels are found by name. Without the module everything works the same, only slower.
/// Safe from any thread.
class AVX2LIB
{
public:
    /// The loaded module; null where the processor lacks AVX2, the module cannot be loaded, or the
    /// environment variable ADJUSTMENTGUI_SIMD is "off".
    static AVX2LIB* Instance();

    /// The function exported as `name`; null if there is none.
    QFunctionPointer Resolve(const char* name);

    /// Resolve() on the module, if there is one, as a function of type `Function`.
    template <class Function>
    static Function Find(const char* name)
    {
        AVX2LIB* const module = Instance();
        return module ? reinterpret_cast<Function>(module->Resolve(name)) : nullptr;
    }

private:
    explicit AVX2LIB(const QString& path);

    QLibrary m_library;
};
