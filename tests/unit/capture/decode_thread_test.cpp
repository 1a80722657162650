#include "capture/decode_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace doccam {
namespace {

TEST(DecodeThread, WorksWhileItsOwnerContinues) {
    DecodeThread side;
    std::atomic<bool> ownerWentOn{false};
    std::thread::id worker;
    side.begin([&] {
        worker = std::this_thread::get_id();
        ownerWentOn.wait(false);
    });
    ownerWentOn = true;
    ownerWentOn.notify_all();
    side.finish();
    EXPECT_NE(worker, std::this_thread::get_id());
}

TEST(DecodeThread, DoesItsWorkInOrderOnOneThread) {
    DecodeThread side;
    std::thread::id first;
    side.begin([&] { first = std::this_thread::get_id(); });
    side.finish();
    int done = 0;
    for (int i = 0; i < 1000; ++i) {
        side.begin([&] { done += std::this_thread::get_id() == first ? 1 : 0; });
        side.finish();
        ASSERT_EQ(done, i + 1);
    }
}

TEST(DecodeThread, ThrowsWhatTheWorkThrewOnce) {
    DecodeThread side;
    side.begin([] { throw std::runtime_error("a frame"); });
    EXPECT_THROW(side.finish(), std::runtime_error);
    side.finish();
    side.begin([] { throw std::runtime_error("nobody asks"); });
    side.waitUntilIdle();
    side.begin([] {});
    side.finish();
}

TEST(DecodeThread, EndsAfterItsWorkAndCanStartAgain) {
    bool done = false;
    DecodeThread side;
    for (int i = 0; i < 3; ++i) {
        done = false;
        side.begin([&] { done = true; });
        side.end();
        EXPECT_TRUE(done);
    }
    side.end();
    {
        DecodeThread another;
        done = false;
        another.begin([&] { done = true; });
    }
    EXPECT_TRUE(done);
}

TEST(DecodeThread, LetsAnyThreadWaitUntilItIsIdle) {
    DecodeThread side;
    side.waitUntilIdle();
    std::atomic<bool> waiting{false};
    std::atomic<bool> mayEnd{false};
    std::atomic<bool> done{false};
    side.begin([&] {
        mayEnd.wait(false);
        done = true;
    });
    bool doneBefore = false;
    std::thread host([&] {
        waiting = true;
        waiting.notify_all();
        side.waitUntilIdle();
        doneBefore = done;
    });
    waiting.wait(false);
    mayEnd = true;
    mayEnd.notify_all();
    host.join();
    EXPECT_TRUE(doneBefore);
    side.finish();
}

} // namespace
} // namespace doccam
