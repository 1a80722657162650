// Texts shared by two threads. These tests also run under the thread sanitizer.
#include "state/shared_text.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace doccam::test {
namespace {

TEST(SharedPath, IsEmptyAtFirst) {
    EXPECT_EQ(SharedPath().load(), "");
}

TEST(SharedPath, ReturnsWhatWasStoredLast) {
    SharedPath path;
    path.store(std::string(254, 'a'));
    path.store("/tmp/page.jpg");
    EXPECT_EQ(path.load(), "/tmp/page.jpg");
}

TEST(SharedPath, FitsUpTo254Bytes) {
    EXPECT_TRUE(SharedPath::fits(std::string(254, 'a')));
    EXPECT_FALSE(SharedPath::fits(std::string(255, 'a')));
}

TEST(SharedPath, ReturnsWholeTextsWhileAnotherThreadStores) {
    SharedPath path;
    path.store(std::string(254, 'a'));
    std::atomic<bool> done{false};
    std::thread writer([&path, &done] {
        for (int i = 0; i < 2000; ++i) {
            path.store(std::string(i % 2 == 0 ? 100 : 254, i % 2 == 0 ? 'b' : 'a'));
        }
        done = true;
    });
    int mixtures = 0;
    do {
        const std::string copy = path.load();
        mixtures += copy == std::string(254, 'a') || copy == std::string(100, 'b') ? 0 : 1;
    } while (!done);
    writer.join();
    EXPECT_EQ(mixtures, 0);
}

TEST(PublishedText, IsEmptyAtFirst) {
    EXPECT_STREQ(PublishedText().current(), "");
}

TEST(PublishedText, ReturnsTheLastText) {
    PublishedText published;
    published.publish("first");
    published.publish("second, and longer than any short-string buffer");
    EXPECT_STREQ(published.current(), "second, and longer than any short-string buffer");
}

TEST(PublishedText, KeepsATextAcrossTheNextPublication) {
    PublishedText published;
    published.publish("first, and longer than any short-string buffer");
    const char* const first = published.current();
    published.publish("second");
    EXPECT_STREQ(first, "first, and longer than any short-string buffer");
}

TEST(PublishedText, IsCompleteWhenAnotherThreadSeesTheAnswer) {
    PublishedText published;
    std::atomic<int> requested{0};
    std::atomic<int> answered{0};
    constexpr int kRounds = 500;
    std::thread publisher([&] {
        for (int round = 1; round <= kRounds; ++round) {
            requested.wait(round - 1, std::memory_order_acquire);
            published.publish("the text of round " + std::to_string(round));
            answered.store(round, std::memory_order_release);
            answered.notify_one();
        }
    });
    for (int round = 1; round <= kRounds; ++round) {
        requested.store(round, std::memory_order_release);
        requested.notify_one();
        answered.wait(round - 1, std::memory_order_acquire);
        EXPECT_EQ(published.current(), "the text of round " + std::to_string(round));
    }
    publisher.join();
}

TEST(PublishedText, CanBeReadWhileTheNextIsBeingPublished) {
    PublishedText published;
    published.publish(std::string(100, 'a'));
    std::thread publisher([&published] { published.publish(std::string(100, 'b')); });
    const std::string copy = published.current();
    publisher.join();
    EXPECT_TRUE(copy == std::string(100, 'a') || copy == std::string(100, 'b'));
}

} // namespace
} // namespace doccam::test
