#include "YDVectorRoutine.h"

#include "image/VectorKernels.h"
#include "utilities/AVX2LIB.h"

const YDVectorRoutine& GetVectorRoutine()
{
    static const YDVectorRoutine routine = [] {
        const auto function = AVX2LIB::Find(VectorKernels::IterativeVectorProcess);
        return function ? YDVectorRoutine(function) : YDVectorRoutine();
    }();
    return routine;
}
