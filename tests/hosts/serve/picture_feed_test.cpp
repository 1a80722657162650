// Distributing the newest picture to viewers of any speed.
#include "serve/live/picture_feed.h"
#include "waiting.h"

#include <gtest/gtest.h>

#include <thread>

namespace doccam::serve {
namespace {

Jpeg picture(unsigned char value) {
    return {value};
}

} // namespace

TEST(PictureFeed, HasNothingAtFirst) {
    PictureFeed feed;
    EXPECT_EQ(feed.next(0, kNoTime).picture, nullptr);
}

TEST(PictureFeed, GivesAllViewersTheSamePicture) {
    PictureFeed feed;
    feed.publish(picture(1));
    EXPECT_EQ(feed.next(0, kLong).picture, feed.next(0, kLong).picture);
}

TEST(PictureFeed, GivesAPictureOnceToEachViewer) {
    PictureFeed feed;
    feed.publish(picture(1));
    const auto first = feed.next(0, kLong);
    EXPECT_EQ(feed.next(first.number, kNoTime).picture, nullptr);
}

TEST(PictureFeed, NeverWaitsForAStalledViewer) {
    PictureFeed feed;
    feed.publish(picture(1));
    const auto held = feed.next(0, kLong); // the stalled viewer still sends this one
    for (int i = 2; i <= 100; ++i) {
        feed.publish(picture(static_cast<unsigned char>(i)));
    }
    EXPECT_EQ(held.picture->front(), 1);
    const auto newest = feed.next(held.number, kLong);
    EXPECT_EQ(newest.picture->front(), 100);
    EXPECT_EQ(newest.number, held.number + 99);
}

TEST(PictureFeed, KeepsOnlyPicturesThatAViewerHolds) {
    PictureFeed feed;
    feed.publish(picture(1));
    const std::weak_ptr<const Jpeg> first = feed.next(0, kLong).picture;
    feed.publish(picture(2));
    EXPECT_TRUE(first.expired());
}

TEST(PictureFeed, WakesAWaitingViewer) {
    PictureFeed feed;
    PictureFeed::Shown seen;
    std::thread viewer([&] { seen = feed.next(0, kLong); });
    EXPECT_TRUE(feed.awaitViewer());
    feed.publish(picture(7));
    viewer.join();
    ASSERT_NE(seen.picture, nullptr);
    EXPECT_EQ(seen.picture->front(), 7);
}

TEST(PictureFeed, ShowsNoOldPictureOnceCleared) {
    PictureFeed feed;
    feed.publish(picture(1));
    feed.clear();
    EXPECT_EQ(feed.next(0, kNoTime).picture, nullptr);
    feed.publish(picture(2));
    EXPECT_EQ(feed.next(0, kLong).picture->front(), 2);
}

TEST(PictureFeed, ReportsWhetherAViewerWaits) {
    PictureFeed feed;
    std::thread viewer([&] { EXPECT_NE(feed.next(0, kLong).picture, nullptr); });
    EXPECT_TRUE(feed.awaitViewer());
    feed.publish(picture(1));
    viewer.join();
}

TEST(PictureFeed, ReleasesTheEncoderWhenItCloses) {
    PictureFeed feed;
    std::thread encoder([&] { EXPECT_FALSE(feed.awaitViewer()); });
    feed.close();
    encoder.join();
}

TEST(PictureFeed, ReleasesAllViewersWhenItCloses) {
    PictureFeed feed;
    std::thread viewer([&] { EXPECT_EQ(feed.next(0, kLong).picture, nullptr); });
    EXPECT_TRUE(feed.awaitViewer());
    feed.close();
    viewer.join();
    EXPECT_TRUE(feed.next(0, kNoTime).closed);
    feed.publish(picture(1));
    EXPECT_EQ(feed.next(0, kLong).picture, nullptr);
}

} // namespace doccam::serve
