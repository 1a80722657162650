// Preview pictures on their way to the encoder.
#include "serve/live/picture_handover.h"

#include <gtest/gtest.h>

#include <thread>

namespace doccam::serve {
namespace {

void give(PictureHandover& handover, unsigned char value) {
    std::vector<unsigned char> pixels(4 * 2 * 3, value);
    handover.give(pixels.data(), {1, 3, 4, 2});
}

unsigned char firstOf(const FormPicture& form) {
    return form.pixels[static_cast<std::size_t>(form.place.y * form.size.width + form.place.x) * 3];
}

} // namespace

TEST(PictureHandover, HandsOverAPictureAndItsPosition) {
    PictureHandover handover;
    handover.setWanted(true);
    handover.setForm({10, 20});
    give(handover, 9);
    FormPicture form;
    ASSERT_TRUE(handover.take(form));
    EXPECT_EQ(form.size, (host::Size{10, 20}));
    EXPECT_EQ(form.place, (cv::Rect{1, 3, 4, 2}));
    EXPECT_EQ(firstOf(form), 9);
}

TEST(PictureHandover, ReplacesAPictureThatWasNotTaken) {
    PictureHandover handover;
    handover.setWanted(true);
    handover.setForm({10, 20});
    for (unsigned char value = 1; value <= 5; ++value) {
        give(handover, value);
    }
    FormPicture form;
    ASSERT_TRUE(handover.take(form));
    EXPECT_EQ(firstOf(form), 5);
}

TEST(PictureHandover, AcceptsNothingWithoutViewersOrForm) {
    PictureHandover handover;
    handover.setForm({10, 20});
    give(handover, 1); // no viewer
    handover.setWanted(true);
    handover.setForm({});
    give(handover, 2); // no form
    handover.setForm({10, 20});
    give(handover, 3);
    FormPicture form;
    ASSERT_TRUE(handover.take(form));
    EXPECT_EQ(firstOf(form), 3);
}

TEST(PictureHandover, KeepsNoOldPictureForTheNextViewer) {
    PictureHandover handover;
    handover.setForm({10, 20});
    handover.setWanted(true);
    give(handover, 1);
    handover.setWanted(false);
    handover.close();
    FormPicture form;
    EXPECT_FALSE(handover.take(form));
}

TEST(PictureHandover, HandsOverAPictureGivenBeforeItClosed) {
    PictureHandover handover;
    handover.setForm({10, 20});
    handover.setWanted(true);
    give(handover, 1);
    handover.close();
    FormPicture form;
    EXPECT_TRUE(handover.take(form));
    EXPECT_FALSE(handover.take(form));
}

TEST(PictureHandover, ReleasesTheReceiverWhenItCloses) {
    PictureHandover handover;
    std::thread taker([&] {
        FormPicture form;
        EXPECT_FALSE(handover.take(form));
    });
    handover.close();
    taker.join();
}

} // namespace doccam::serve
