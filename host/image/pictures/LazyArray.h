#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>

/// Room for many values of which few may ever be used: what is never written to takes no memory, as the
/// system hands out pages when they are first touched.
///
/// No value exists before it is assigned.
template <class T>
class LazyArray
{
    static_assert(std::is_trivially_copyable_v<T>, "values are neither made nor destroyed");

public:
    /// Null where the system refuses the room.
    explicit LazyArray(std::size_t count)
        : m_values(count <= std::numeric_limits<std::size_t>::max() / sizeof(T)
                       ? static_cast<T*>(::operator new(count * sizeof(T), std::nothrow))
                       : nullptr)
    {}

    bool IsNull() const { return !m_values; }
    T& operator[](std::size_t index) const { return m_values.get()[index]; }
    T* At(std::size_t index) const { return m_values.get() + index; }

private:
    struct Free
    {
        void operator()(T* values) const { ::operator delete(values); }
    };

    std::unique_ptr<T, Free> m_values;
};
