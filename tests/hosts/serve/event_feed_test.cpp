// Events for pages of any speed.
#include "serve/commands/event_feed.h"
#include "waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace doccam::serve {
namespace {

std::vector<std::string> topics(const EventFeed::News& news) {
    std::vector<std::string> lines;
    for (const EventFeed::Event& event : news.events) {
        lines.push_back(event.topic + "=" + event.text);
    }
    return lines;
}

TEST(EventFeed, SendsEveryTopicAtFirst) {
    EventFeed feed;
    feed.set("b", "1");
    feed.set("a", "2");
    EXPECT_THAT(topics(feed.next(0, kLong)), testing::ElementsAre("b=1", "a=2"));
}

TEST(EventFeed, ThenSendsOnlyWhatChanged) {
    EventFeed feed;
    feed.set("a", "1");
    feed.set("b", "1");
    const auto news = feed.next(0, kLong);
    feed.set("a", "2");
    EXPECT_THAT(topics(feed.next(news.version, kLong)), testing::ElementsAre("a=2"));
}

TEST(EventFeed, SendsASlowListenerOnlyTheNewest) {
    EventFeed feed;
    for (int i = 0; i <= 1000; ++i) {
        feed.set("rate", std::to_string(i));
    }
    EXPECT_THAT(topics(feed.next(0, kLong)), testing::ElementsAre("rate=1000"));
}

TEST(EventFeed, IgnoresAnUnchangedText) {
    EventFeed feed;
    feed.set("a", "");
    const auto news = feed.next(0, kLong);
    EXPECT_THAT(topics(news), testing::ElementsAre("a="));
    feed.set("a", "");
    EXPECT_TRUE(feed.next(news.version, kNoTime).events.empty());
}

TEST(EventFeed, ReleasesListenersWhenItCloses) {
    EventFeed feed;
    std::thread listener([&] { EXPECT_TRUE(feed.next(0, kLong).events.empty()); });
    feed.close();
    listener.join();
    EXPECT_TRUE(feed.next(0, kNoTime).closed);
}

} // namespace
} // namespace doccam::serve
