#pragma once

#include <QtGlobal>

#if defined(__SANITIZE_THREAD__)
#define ADJUSTMENTGUI_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define ADJUSTMENTGUI_THREAD_SANITIZER
#endif
#endif

#if defined(ADJUSTMENTGUI_THREAD_SANITIZER)
extern "C" {
void __tsan_acquire(void* address);
void __tsan_release(void* address);
void AnnotateIgnoreReadsBegin(const char* file, int line);
void AnnotateIgnoreReadsEnd(const char* file, int line);
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
}
#endif

/// Says to the thread sanitizer what passes from thread to thread through Qt, whose own locks it does not
/// see. Nothing in any other build.
///
/// What a thread did before Give(token) has happened for every thread that comes out of Take(token)
/// afterwards.
namespace HandOver {

/// The token of everything that is handed to the global thread pool: a task knows no other address before
/// it has taken over what was handed to it.
inline char ToThePool = 0;

inline void Give([[maybe_unused]] const void* token)
{
#if defined(ADJUSTMENTGUI_THREAD_SANITIZER)
    __tsan_release(const_cast<void*>(token));
#endif
}

inline void Take([[maybe_unused]] const void* token)
{
#if defined(ADJUSTMENTGUI_THREAD_SANITIZER)
    __tsan_acquire(const_cast<void*>(token));
#endif
}

/// While it lives, what its thread reads and writes is what Qt guards by itself, such as the copy of a result
/// that a future keeps: made on the job's thread, and destroyed on the thread that lets the future go last.
class GuardedByQt
{
#if defined(ADJUSTMENTGUI_THREAD_SANITIZER)
public:
    GuardedByQt()
    {
        AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
        AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    }

    ~GuardedByQt()
    {
        AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
        AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
    }

    Q_DISABLE_COPY_MOVE(GuardedByQt)
#endif
};

} // namespace HandOver
