// KORVO_TEST_SANITIZED is defined in builds with a sanitizer that brings C library functions of its own: those are
// not replaced once more.
#pragma once

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KORVO_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KORVO_TEST_SANITIZED 1
#endif
#endif
