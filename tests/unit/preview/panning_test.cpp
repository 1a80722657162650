// Dragging the picture within the form, or the form over the frame.
#include "preview_fixture.h"

#include <doccam/doccam.hpp>

namespace doccam::test {
namespace {

using Panning = Preview;

TEST_F(Panning, DragsASmallPictureWithinTheForm) {
    streamSmallFrame();
    Web_SetMoveOffet(-100, 20);
    EXPECT_EQ(currentFields(), (PreviewFields{.FormWidth = 800,
                                              .FormHeight = 600,
                                              .FormStartX = 99,
                                              .FormStartY = 169,
                                              .ShowWidth = 400,
                                              .ShowHeight = 300,
                                              .ZoomWidth = 402,
                                              .ZoomHeight = 302,
                                              .ZoomStartX = 0,
                                              .ZoomStartY = 0,
                                              .VideoOffsetX = 99,
                                              .VideoOffsetY = 169,
                                              .pZoomScale = 100.0,
                                              .pBestScale = 100.0}));
}

TEST_F(Panning, IgnoresADragOfASmallPicturePastTheNearEdge) {
    streamSmallFrame();
    Web_SetMoveOffet(-200, -150);
    EXPECT_EQ(state().view.FormStartX, 0);
    EXPECT_EQ(state().view.FormStartY, 0);
    EXPECT_EQ(state().view.ZoomStartX, 0);
    EXPECT_EQ(state().view.VideoOffsetX, 199);
    EXPECT_EQ(state().view.VideoOffsetY, 149);
    Web_SetMoveOffet(-199, -149);
    EXPECT_EQ(state().view.VideoOffsetX, 0);
    EXPECT_EQ(state().view.VideoOffsetY, 0);
    EXPECT_EQ(state().view.FormStartX, 0);
}

TEST_F(Panning, StopsASmallPictureAtTheFarEdge) {
    streamSmallFrame();
    Web_SetMoveOffet(200, 150);
    EXPECT_EQ(state().view.VideoOffsetX, 398);
    EXPECT_EQ(state().view.FormStartX, 398);
    EXPECT_EQ(state().view.VideoOffsetY, 298);
    EXPECT_EQ(state().view.FormStartY, 298);
    Web_SetMoveOffet(kHuge, kHuge);
    EXPECT_EQ(state().view.FormStartX, 398);
    Web_SetMoveOffet(kLowest, kLowest);
    EXPECT_EQ(state().view.FormStartX, 0);
    EXPECT_EQ(state().view.VideoOffsetX, 398);
}

// Starts at offset 0, as after a drag to the frame's near edge.
struct Drag {
    int distance;
    int offset;
};

class DragOverALargerFrame : public Panning, public testing::WithParamInterface<Drag> {};

TEST_P(DragOverALargerFrame, StaysOnItOrJumpsToItsEnd) {
    streamLargeFrame();
    Web_TrueSize();
    Web_SetMoveOffet(100, 75);
    ASSERT_EQ(state().view.VideoOffsetX, 0);
    ASSERT_EQ(state().view.VideoOffsetY, 0);

    PreviewFields expected = currentFields();
    expected.VideoOffsetX = expected.ZoomStartX = GetParam().offset;
    Web_SetMoveOffet(GetParam().distance, 0);
    EXPECT_EQ(currentFields(), expected);
}

INSTANTIATE_TEST_SUITE_P(Distances, DragOverALargerFrame,
                         testing::Values(Drag{0, 0}, Drag{100, 0}, Drag{200, 0}, Drag{201, -200},
                                         Drag{300, -200}, Drag{-300, -200}, Drag{-200, -200},
                                         Drag{-199, -199}, Drag{-1, -1}, Drag{kHuge, -200},
                                         Drag{kLowest, -200}));

TEST_F(Panning, DragsOverALargerFrameVerticallyToo) {
    streamLargeFrame();
    Web_TrueSize();
    Web_SetMoveOffet(0, -10);
    EXPECT_EQ(state().view.VideoOffsetY, -85);
    EXPECT_EQ(state().view.ZoomStartY, -85);
    Web_SetMoveOffet(0, 100);
    EXPECT_EQ(state().view.VideoOffsetY, 0);
    Web_SetMoveOffet(0, 151);
    EXPECT_EQ(state().view.VideoOffsetY, -150);
    EXPECT_EQ(state().view.VideoOffsetX, -100);
}

TEST_F(Panning, CannotDragAFrameThatFillsTheForm) {
    stream({800, 600});
    SetWebFormSize(800, 600);
    const PreviewFields before = currentFields();
    for (const int distance : {1, -1, 5000, -5000}) {
        Web_SetMoveOffet(distance, distance);
        EXPECT_EQ(currentFields(), before);
    }
}

} // namespace
} // namespace doccam::test
