// Preview pictures on their way to the encoder.
#include "serve/picture_handover.h"

#include <gtest/gtest.h>

#include <thread>

namespace doccam::serve {
namespace {

void give(PictureHandover& handover, unsigned char value) {
    const std::vector<unsigned char> pixels(4 * 2 * 3, value);
    handover.give(pixels.data(), 4, 2, 1, 3);
}

} // namespace

TEST(PictureHandover, HandsOverAPictureAndItsPlace) {
    PictureHandover handover;
    handover.setWanted(true);
    handover.setForm(10, 20);
    give(handover, 9);
    PreviewPicture picture;
    ASSERT_TRUE(handover.take(picture));
    EXPECT_EQ(picture.pixels, std::vector<unsigned char>(24, 9));
    EXPECT_EQ(picture.width, 4);
    EXPECT_EQ(picture.height, 2);
    EXPECT_EQ(picture.startX, 1);
    EXPECT_EQ(picture.startY, 3);
    EXPECT_EQ(picture.formWidth, 10);
    EXPECT_EQ(picture.formHeight, 20);
}

TEST(PictureHandover, ReplacesAPictureThatWasNotTaken) {
    PictureHandover handover;
    handover.setWanted(true);
    handover.setForm(10, 20);
    for (unsigned char value = 1; value <= 5; ++value) {
        give(handover, value);
    }
    PreviewPicture picture;
    ASSERT_TRUE(handover.take(picture));
    EXPECT_EQ(picture.pixels.front(), 5);
}

TEST(PictureHandover, TakesNothingWithoutViewersOrForm) {
    PictureHandover handover;
    handover.setForm(10, 20);
    give(handover, 1); // nobody looks
    handover.setWanted(true);
    handover.setForm(0, 0);
    give(handover, 2); // no form
    handover.setForm(10, 20);
    give(handover, 3);
    PreviewPicture picture;
    ASSERT_TRUE(handover.take(picture));
    EXPECT_EQ(picture.pixels.front(), 3);
}

TEST(PictureHandover, LetsTheTakerGoWhenItCloses) {
    PictureHandover handover;
    std::thread taker([&] {
        PreviewPicture picture;
        EXPECT_FALSE(handover.take(picture));
    });
    handover.close();
    taker.join();
}

} // namespace doccam::serve
