// Linked into the tests that are not run under the thread sanitizer, because they start no thread: ends them
// at the first one.

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

using PthreadCreate = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);

} // namespace

/// Stands in front of the C library's. Qt Test's own thread, which ends a test function that takes too long,
/// is the first of every test program.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                              void* argument)
{
    static std::atomic<int> started{0};
    if (started.fetch_add(1) > 0) {
        std::fputs("A thread is started, but this test is listed as one that starts no thread.\n", stderr);
        std::_Exit(EXIT_FAILURE);
    }
    static const auto create = reinterpret_cast<PthreadCreate>(dlsym(RTLD_NEXT, "pthread_create"));
    return create(thread, attributes, start, argument);
}
