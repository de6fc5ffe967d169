#include "YDVectorRoutine.h"

#include "utilities/AVX2LIB.h"

const YDVectorRoutine& GetVectorRoutine()
{
    static const YDVectorRoutine routine = [] {
        using Function = void (*)(YDRGBA32i*, int, const QRect&, BaseTransformation*,
                                  const std::atomic<bool>&, std::function<void()>);
        const auto function = AVX2LIB::Find<Function>("IterativeVectorProcess");
        return function ? YDVectorRoutine(function) : YDVectorRoutine();
    }();
    return routine;
}
