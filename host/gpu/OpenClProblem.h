#pragma once

#include <CL/cl.h>
#include <QString>

/// What to tell people of `status`, which the function `call` of OpenCL gave; empty for CL_SUCCESS.
[[nodiscard]] QString OpenClProblem(const char* call, cl_int status);
