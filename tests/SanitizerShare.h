#pragma once

/// What is tried many times is tried one time in so many under a sanitizer, which makes each take ten times
/// as long, and finds what it looks for in a tenth of them: what comes out is the business of the other
/// builds.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int SanitizerShare = 10;
#else
constexpr int SanitizerShare = 1;
#endif
