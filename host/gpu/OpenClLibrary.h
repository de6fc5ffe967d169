#pragma once

#include <CL/cl.h>
#include <QString>

#include <memory>

/// The functions of the system's OpenCL library, found by name when the program runs.
///
/// A program that linked the library would not start where it is missing.
struct OpenClLibrary
{
    decltype(&clBuildProgram) buildProgram = nullptr;
    decltype(&clCreateBuffer) createBuffer = nullptr;
    decltype(&clCreateCommandQueue) createCommandQueue = nullptr;
    decltype(&clCreateContext) createContext = nullptr;
    decltype(&clCreateKernel) createKernel = nullptr;
    decltype(&clCreateProgramWithSource) createProgramWithSource = nullptr;
    decltype(&clEnqueueMapBuffer) enqueueMapBuffer = nullptr;
    decltype(&clEnqueueNDRangeKernel) enqueueNDRangeKernel = nullptr;
    decltype(&clEnqueueReadBuffer) enqueueReadBuffer = nullptr;
    decltype(&clEnqueueUnmapMemObject) enqueueUnmapMemObject = nullptr;
    decltype(&clEnqueueWriteBuffer) enqueueWriteBuffer = nullptr;
    decltype(&clFinish) finish = nullptr;
    decltype(&clFlush) flush = nullptr;
    decltype(&clGetDeviceIDs) getDeviceIds = nullptr;
    decltype(&clGetDeviceInfo) getDeviceInfo = nullptr;
    decltype(&clGetPlatformIDs) getPlatformIds = nullptr;
    decltype(&clGetProgramBuildInfo) getProgramBuildInfo = nullptr;
    decltype(&clReleaseCommandQueue) releaseCommandQueue = nullptr;
    decltype(&clReleaseContext) releaseContext = nullptr;
    decltype(&clReleaseEvent) releaseEvent = nullptr;
    decltype(&clReleaseKernel) releaseKernel = nullptr;
    decltype(&clReleaseMemObject) releaseMemObject = nullptr;
    decltype(&clReleaseProgram) releaseProgram = nullptr;
    decltype(&clSetKernelArg) setKernelArg = nullptr;
    decltype(&clWaitForEvents) waitForEvents = nullptr;

    /// Where the library is on this system.
    static QString DefaultFileName();

    /// The library called `fileName`, which stays loaded; null, and why in `problem`, where there is none or
    /// where it lacks a function.
    static std::shared_ptr<const OpenClLibrary> Load(const QString& fileName, QString& problem);
};
