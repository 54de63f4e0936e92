#pragma once

#include <gtest/gtest.h>

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <type_traits>

/// Whether a sanitizer makes frames and objects several times their size.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define MODELING_NUV0_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define MODELING_NUV0_SANITIZED 1
#endif
#endif
#ifndef MODELING_NUV0_SANITIZED
#define MODELING_NUV0_SANITIZED 0
#endif

/// Whatever grows with the depth of a model has to live on the heap: tests run deep models on a
/// stack that holds a few hundred frames and no more.
namespace nuv::zero::test {

/// Sanitizers need several times the frame, so they get several times the stack.
inline constexpr std::size_t smallStackBytes = (MODELING_NUV0_SANITIZED ? 512U : 64U) * 1024U;

/// How deep and wide the models are. Sanitized and unoptimised builds, which take many times the
/// memory and time, have fewer; a recursion overflows the small stack with those too.
#if MODELING_NUV0_SANITIZED || !defined(NDEBUG)
inline constexpr int deepModelSize = 100'000;
#else
inline constexpr int deepModelSize = 5'000'000;
#endif

/// The small stack, or the smallest that the system allows.
inline std::size_t stackBytesGranted() {
    const long least = sysconf(_SC_THREAD_STACK_MIN);
    return std::max(smallStackBytes, least > 0 ? static_cast<std::size_t>(least) : 0U);
}

/// Calls something on a thread with the small stack, and waits for it.
template <class Body>
void onSmallStack(Body&& body) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, stackBytesGranted()), 0);
    pthread_t thread{};
    const auto start = [](void* argument) -> void* {
        (*static_cast<std::remove_reference_t<Body>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &body), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

}  // namespace nuv::zero::test
