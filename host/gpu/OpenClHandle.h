#pragma once

#include <CL/cl.h>

#include <utility>

/// Owns one object of OpenCL, such as a cl_mem, and releases it.
template <class Object>
class OpenClHandle
{
public:
    using Release = cl_int(CL_API_CALL*)(Object);

    OpenClHandle() = default;
    /// Owns `object`, which may be null.
    OpenClHandle(Object object, Release release) : m_object(object), m_release(release) {}
    OpenClHandle(OpenClHandle&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr)), m_release(other.m_release)
    {}
    OpenClHandle& operator=(OpenClHandle&& other) noexcept
    {
        std::swap(m_object, other.m_object);
        std::swap(m_release, other.m_release);
        return *this;
    }
    OpenClHandle(const OpenClHandle&) = delete;
    OpenClHandle& operator=(const OpenClHandle&) = delete;
    ~OpenClHandle()
    {
        if (m_object)
            m_release(m_object); // nothing is left to be done about a failure
    }

    Object Get() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    Object m_object = nullptr;
    Release m_release = nullptr;
};
