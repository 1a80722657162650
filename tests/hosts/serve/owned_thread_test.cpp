// A thread's stack is large enough whatever the shell's limit.
#include "serve/owned_thread.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

namespace doccam::serve {
namespace {

std::size_t ownStack() {
    pthread_attr_t attributes{};
    pthread_getattr_np(pthread_self(), &attributes);
    std::size_t bytes = 0;
    pthread_attr_getstacksize(&attributes, &bytes);
    pthread_attr_destroy(&attributes);
    return bytes;
}

} // namespace

TEST(OwnedThread, HasItsFullStackUnderASmallLimit) {
    rlimit before{};
    getrlimit(RLIMIT_STACK, &before);
    const rlimit small{std::size_t{512} * 1024, before.rlim_max};
    setrlimit(RLIMIT_STACK, &small);
    std::size_t bytes = 0;
    ownedThread([&] { bytes = ownStack(); }).join();
    setrlimit(RLIMIT_STACK, &before);
    EXPECT_GE(bytes, kStackBytes);
}

} // namespace doccam::serve
