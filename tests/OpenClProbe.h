#pragma once

#include "gpu/OpenClLibrary.h"

#include <QtTest>

#include <atomic>
#include <cstring>
#include <memory>
#include <tuple>
#include <type_traits>

/// OpenCL as it is on this machine, with an ear at every call and a hand on some.
///
/// There is one at a time: OpenCL's functions carry no data of the caller's.
class OpenClProbe
{
public:
    /// Ends the test program where there is no OpenCL, since the tests would mean nothing.
    OpenClProbe()
    {
        QString problem;
        s_real = OpenClLibrary::Load(OpenClLibrary::DefaultFileName(), problem);
        if (!s_real)
            qFatal("There is no OpenCL to test with (%s); `./dev install-deps` installs PoCL.",
                   qPrintable(problem));
        s_live = 0;
        s_failing = nullptr;
        s_failingFrom = 0;
        s_sharesMemory = -1;
        s_largestBuffer = 0;
    }
    ~OpenClProbe() { s_real.reset(); }
    Q_DISABLE_COPY(OpenClProbe)

    static std::shared_ptr<const OpenClLibrary> Loaded()
    {
        auto library = std::make_shared<OpenClLibrary>(*s_real);
        library->buildProgram = Ear<&OpenClLibrary::buildProgram>::Call;
        library->createBuffer = Ear<&OpenClLibrary::createBuffer>::Call;
        library->createCommandQueue = Ear<&OpenClLibrary::createCommandQueue>::Call;
        library->createContext = Ear<&OpenClLibrary::createContext>::Call;
        library->createKernel = Ear<&OpenClLibrary::createKernel>::Call;
        library->createProgramWithSource = Ear<&OpenClLibrary::createProgramWithSource>::Call;
        library->enqueueMapBuffer = Ear<&OpenClLibrary::enqueueMapBuffer>::Call;
        library->enqueueNDRangeKernel = Ear<&OpenClLibrary::enqueueNDRangeKernel>::Call;
        library->enqueueReadBuffer = Ear<&OpenClLibrary::enqueueReadBuffer>::Call;
        library->enqueueUnmapMemObject = Ear<&OpenClLibrary::enqueueUnmapMemObject>::Call;
        library->enqueueWriteBuffer = Ear<&OpenClLibrary::enqueueWriteBuffer>::Call;
        library->finish = Ear<&OpenClLibrary::finish>::Call;
        library->flush = Ear<&OpenClLibrary::flush>::Call;
        library->getDeviceInfo = GetDeviceInfo;
        library->getPlatformIds = Ear<&OpenClLibrary::getPlatformIds>::Call;
        library->releaseCommandQueue = Ear<&OpenClLibrary::releaseCommandQueue>::Call;
        library->releaseContext = Ear<&OpenClLibrary::releaseContext>::Call;
        library->releaseEvent = Ear<&OpenClLibrary::releaseEvent>::Call;
        library->releaseKernel = Ear<&OpenClLibrary::releaseKernel>::Call;
        library->releaseMemObject = Ear<&OpenClLibrary::releaseMemObject>::Call;
        library->releaseProgram = Ear<&OpenClLibrary::releaseProgram>::Call;
        library->setKernelArg = Ear<&OpenClLibrary::setKernelArg>::Call;
        library->waitForEvents = Ear<&OpenClLibrary::waitForEvents>::Call;
        return library;
    }

    /// Objects of OpenCL that were made and not released.
    static int LiveObjects() { return s_live; }

    /// How often the function was called.
    template <auto Function>
    static int CallsOf()
    {
        return Ear<Function>::s_calls;
    }
    /// The call that a function fails from on; 0 for the next.
    template <auto Function>
    static void Fail(int from = 0)
    {
        s_failing = &Ear<Function>::s_calls;
        s_failingFrom = Ear<Function>::s_calls + from;
    }
    static void FailNothing() { s_failing = nullptr; }

    /// What the device says of itself.
    static void SetSharesMemory(bool shares) { s_sharesMemory = shares ? CL_TRUE : CL_FALSE; }
    static void SetLargestBuffer(cl_ulong bytes) { s_largestBuffer = bytes; }

private:
    static constexpr cl_int Failure = CL_OUT_OF_RESOURCES;

    template <auto Function>
    struct Ear;

    template <class Result, class... Arguments, Result (CL_API_CALL* OpenClLibrary::*Function)(Arguments...)>
    struct Ear<Function>
    {
        static constexpr bool IsStatus = std::is_same_v<Result, cl_int>;
        inline static std::atomic<int> s_calls{0};

        static Result CL_API_CALL Call(Arguments... arguments)
        {
            const bool fails = s_failing == &s_calls && s_calls >= s_failingFrom;
            ++s_calls;
            const auto real = (*s_real).*Function;
            if constexpr (IsStatus) {
                // What waits has waited, so that the device is at rest whatever it says.
                if (fails && !Waits())
                    return Failure;
                const cl_int status = real(arguments...);
                if constexpr (IsReleasing())
                    --s_live;
                else
                    CountEvent(arguments...);
                return fails ? Failure : status;
            } else {
                if (fails) {
                    *std::get<sizeof...(Arguments) - 1>(std::tie(arguments...)) = Failure;
                    return nullptr;
                }
                const Result object = real(arguments...);
                if constexpr (!std::is_same_v<Result, void*>)
                    s_live += object ? 1 : 0;
                return object;
            }
        }

    private:
        template <auto Other>
        static constexpr bool Is()
        {
            if constexpr (std::is_same_v<decltype(Other), decltype(Function)>)
                return Other == Function;
            else
                return false;
        }
        static constexpr bool Waits()
        {
            return Is<&OpenClLibrary::finish>() || Is<&OpenClLibrary::flush>() ||
                   Is<&OpenClLibrary::waitForEvents>();
        }
        static constexpr bool IsReleasing()
        {
            return Is<&OpenClLibrary::releaseCommandQueue>() || Is<&OpenClLibrary::releaseContext>() ||
                   Is<&OpenClLibrary::releaseEvent>() || Is<&OpenClLibrary::releaseKernel>() ||
                   Is<&OpenClLibrary::releaseMemObject>() || Is<&OpenClLibrary::releaseProgram>();
        }
        /// The calls that give an event take it as their last argument.
        static void CountEvent(Arguments... arguments)
        {
            const auto last = std::get<sizeof...(Arguments) - 1>(std::tie(arguments...));
            if constexpr (std::is_same_v<std::remove_const_t<decltype(last)>, cl_event*>)
                s_live += last ? 1 : 0;
        }
    };

    static cl_int CL_API_CALL GetDeviceInfo(cl_device_id device, cl_device_info what, std::size_t size,
                                            void* value, std::size_t* neededSize)
    {
        if (what == CL_DEVICE_HOST_UNIFIED_MEMORY && s_sharesMemory >= 0) {
            const auto shares = static_cast<cl_bool>(s_sharesMemory);
            std::memcpy(value, &shares, sizeof(shares));
            return CL_SUCCESS;
        }
        if (what == CL_DEVICE_MAX_MEM_ALLOC_SIZE && s_largestBuffer > 0) {
            const cl_ulong bytes = s_largestBuffer;
            std::memcpy(value, &bytes, sizeof(bytes));
            return CL_SUCCESS;
        }
        return s_real->getDeviceInfo(device, what, size, value, neededSize);
    }

    inline static std::shared_ptr<const OpenClLibrary> s_real;
    inline static std::atomic<int> s_live{0};
    inline static std::atomic<const std::atomic<int>*> s_failing{nullptr};
    inline static std::atomic<int> s_failingFrom{0};
    inline static std::atomic<int> s_sharesMemory{-1};      ///< -1: as it is
    inline static std::atomic<cl_ulong> s_largestBuffer{0}; ///< 0: as it is
};
