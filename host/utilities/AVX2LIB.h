#pragma once

#include "utilities/VectorKernel.h"

#include <QLibrary>
#include <QtGlobal>

/// The module of vector kernels, loaded once per process where the processor has AVX2.
///
/// Kernels are looked up by name. Without the module everything works the same, only slower.
/// Safe from any thread.
class AVX2LIB
{
public:
    /// The loaded module; null where the processor lacks AVX2, the module cannot be loaded, or the
    /// environment variable ADJUSTMENTGUI_SIMD is "off".
    static AVX2LIB* Instance();

    /// The function that `kernel` stands for; null without the module, or if it exports none of that name.
    template <class Signature>
    static Signature* Find(const VectorKernel<Signature>& kernel)
    {
        AVX2LIB* const module = Instance();
        return module ? reinterpret_cast<Signature*>(module->Resolve(kernel.m_name)) : nullptr;
    }

private:
    explicit AVX2LIB(const QString& path);

    QFunctionPointer Resolve(const char* name);

    QLibrary m_library;
};
