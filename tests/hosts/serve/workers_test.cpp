// The threads that serve requests.
#include "serve/http/workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>

namespace doccam::serve {
namespace {

void take(Workers& workers, std::function<void()> work, bool taken) {
    EXPECT_EQ(workers.take(work), taken);
}

} // namespace

TEST(Workers, DoTheWorkTheyAccept) {
    Workers workers(2, 4);
    std::promise<void> first;
    std::promise<void> second;
    take(
        workers, [&] { first.set_value(); }, true);
    take(
        workers, [&] { second.set_value(); }, true);
    first.get_future().wait();
    second.get_future().wait();
}

TEST(Workers, RefuseWhatWouldWaitTooLong) {
    std::promise<void> begun;
    std::promise<void> released;
    const std::shared_future<void> released_ = released.get_future().share();
    Workers workers(1, 1);
    take(
        workers,
        [&] {
            begun.set_value();
            released_.wait();
        },
        true);
    begun.get_future().wait();
    take(
        workers, [] {}, true);
    take(
        workers, [] {}, false);
    released.set_value();
}

TEST(Workers, DropWaitingWorkWhenTheyEnd) {
    std::promise<void> begun;
    std::promise<void> released;
    std::future<void> mayEnd = released.get_future();
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> kept = held;
    {
        Workers workers(1, 1);
        take(
            workers,
            [&] {
                begun.set_value();
                mayEnd.wait();
            },
            true);
        begun.get_future().wait();
        take(
            workers, [held] {}, true);
        held.reset();
        released.set_value();
    }
    EXPECT_TRUE(kept.expired());
}

} // namespace doccam::serve
