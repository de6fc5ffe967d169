#pragma once

/// A function of the module of vector kernels: its name and, as `Signature`, its type.
///
/// VectorKernels alone makes them, so that nobody can ask the module for a name or a type of his own.
template <class Signature>
class VectorKernel
{
public:
    using Function = Signature;

private:
    friend class AVX2LIB;
    friend struct VectorKernels;

    constexpr VectorKernel(const char* name) : m_name(name) {}

    const char* m_name;
};
