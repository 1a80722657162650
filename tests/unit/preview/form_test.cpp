// Fitting the frame into the host's form.
#include "preview/view.h"
#include "preview_fixture.h"

#include <doccam/doccam.hpp>

#include <algorithm>
#include <limits>

namespace doccam::test {
namespace {

class Form : public Preview {};

TEST_F(Form, RelativelyNarrowerThanTheFrameIsFilledInWidth) {
    stream({1920, 1080});
    SetWebFormSize(800, 600);
    EXPECT_EQ(currentFields(), (PreviewFields{.FormWidth = 800,
                                              .FormHeight = 600,
                                              .FormStartX = 0,
                                              .FormStartY = 75,
                                              .ShowWidth = 800,
                                              .ShowHeight = 448,
                                              .ZoomWidth = 800,
                                              .ZoomHeight = 450,
                                              .ZoomStartX = 0,
                                              .ZoomStartY = 75,
                                              .VideoOffsetX = 0,
                                              .VideoOffsetY = 75,
                                              .pZoomScale = 100.0 * 800 / 1920,
                                              .pBestScale = 100.0 * 800 / 1920}));
}

TEST_F(Form, RelativelyWiderThanTheTurnedFrameIsFilledInHeight) {
    stream({1920, 1080});
    for (const int angle : {1, 3}) {
        SetRotate(angle);
        SetWebFormSize(800, 600);
        EXPECT_EQ(currentFields(), (PreviewFields{.FormWidth = 800,
                                                  .FormHeight = 600,
                                                  .FormStartX = 231,
                                                  .FormStartY = 0,
                                                  .ShowWidth = 336,
                                                  .ShowHeight = 600,
                                                  .ZoomWidth = 337,
                                                  .ZoomHeight = 600,
                                                  .ZoomStartX = 231,
                                                  .ZoomStartY = 0,
                                                  .VideoOffsetX = 231,
                                                  .VideoOffsetY = 0,
                                                  .pZoomScale = 31.25,
                                                  .pBestScale = 31.25,
                                                  .RotateAngle = angle}));
    }
}

TEST_F(Form, DoesNotSwapSidesUpsideDownOrForUnknownTurns) {
    stream({1920, 1080});
    for (const int angle : {2, 4, 7, -1}) {
        SetRotate(angle);
        SetWebFormSize(800, 600);
        EXPECT_EQ(state().view.ZoomWidth, 800) << angle;
        EXPECT_EQ(state().view.ZoomHeight, 450) << angle;
    }
}

TEST_F(Form, LargerThanTheFrameShowsItAtTrueSizeInTheMiddle) {
    stream({640, 480});
    SetWebFormSize(800, 600);
    EXPECT_EQ(currentFields(), (PreviewFields{.FormWidth = 800,
                                              .FormHeight = 600,
                                              .FormStartX = 80,
                                              .FormStartY = 60,
                                              .ShowWidth = 640,
                                              .ShowHeight = 480,
                                              .ZoomWidth = 640,
                                              .ZoomHeight = 480,
                                              .ZoomStartX = 80,
                                              .ZoomStartY = 60,
                                              .VideoOffsetX = 80,
                                              .VideoOffsetY = 60,
                                              .pZoomScale = 100.0,
                                              .pBestScale = 100.0}));
}

TEST_F(Form, AsWideAsTheFrameAndHigherShowsItAtTrueSize) {
    stream({800, 500});
    SetWebFormSize(800, 600);
    EXPECT_EQ(state().view.pZoomScale, 100.0);
    EXPECT_EQ(state().view.ZoomWidth, 800);
    EXPECT_EQ(state().view.ZoomHeight, 500);
    EXPECT_EQ(state().view.FormStartX, 0);
    EXPECT_EQ(state().view.FormStartY, 50);
}

TEST_F(Form, AsWideAsTheFrameAndLowerIsFilledInHeight) {
    stream({800, 500});
    SetWebFormSize(800, 250);
    EXPECT_EQ(state().view.pZoomScale, 50.0);
    EXPECT_EQ(state().view.FormStartX, 200);
}

// Only sizes this large distinguish the two rules: the aspect ratios are equal as doubles, the
// scales are not.
TEST_F(Form, OfTheFramesAspectRatioIsFilledInWidth) {
    const FrameSize frame{1267074796, 1852977803};
    const FrameSize form{1267074264, 1852977025};
    ASSERT_EQ(static_cast<double>(form.width) / form.height,
              static_cast<double>(frame.width) / frame.height);
    ASSERT_NE(100.0 * form.width / frame.width, 100.0 * form.height / frame.height);
    EXPECT_EQ(fittingScale(frame, form), 100.0 * form.width / frame.width);
}

TEST_F(Form, OfTheFramesAspectRatioIsFilledWhole) {
    stream({1600, 1200});
    SetWebFormSize(800, 600);
    EXPECT_EQ(state().view.pZoomScale, 50.0);
    EXPECT_EQ(state().view.ShowWidth, 800);
    EXPECT_EQ(state().view.ShowHeight, 600);
}

TEST_F(Form, OfOddSizeShowsAPictureOfMultiplesOfFour) {
    stream({3264, 2448});
    SetWebFormSize(801, 2000);
    EXPECT_EQ(state().view.ZoomWidth, 801);
    EXPECT_EQ(state().view.ShowWidth, 800);
    EXPECT_EQ(state().view.ZoomHeight, 600);
    SetWebFormSize(2000, 603);
    EXPECT_EQ(state().view.ShowHeight, 600);
    EXPECT_EQ(state().view.ShowWidth, 804);
}

TEST_F(Form, OfTheFirstDeclarationSizesTheBuffer) {
    stream({1920, 1080});
    EXPECT_EQ(state().view.WEB_BUF, nullptr);
    EXPECT_EQ(state().view.previewBytes, 0U);
    SetWebFormSize(801, 600);
    const unsigned char* const buffer = state().view.WEB_BUF;
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(state().session.frames->preview.get(), buffer);
    EXPECT_EQ(state().view.previewBytes, 801U * 600U * 3U);
    EXPECT_TRUE(std::all_of(buffer, buffer + state().view.previewBytes,
                            [](int byte) { return byte == 0; }));
}

TEST_F(Form, EnlargedLaterKeepsTheFirstBuffer) {
    stream({1920, 1080});
    SetWebFormSize(400, 300);
    const unsigned char* const buffer = state().view.WEB_BUF;
    SetWebFormSize(1600, 1200);
    EXPECT_EQ(state().view.WEB_BUF, buffer);
    EXPECT_EQ(state().view.previewBytes, 400U * 300U * 3U);
    EXPECT_EQ(state().view.FormWidth, 1600);
    EXPECT_EQ(state().view.ShowWidth, 1600);
}

TEST_F(Form, DeclaredAgainReturnsToTheBestFitInTheMiddle) {
    stream({1920, 1080});
    SetWebFormSize(800, 600);
    const PreviewFields fitted = currentFields();
    Web_TrueSize();
    Web_SetMoveOffet(-50, -60);
    ASSERT_NE(currentFields(), fitted);
    SetWebFormSize(800, 600);
    EXPECT_EQ(currentFields(), fitted);
}

TEST_F(Form, WithoutPixelsHasNoBuffer) {
    stream({1920, 1080});
    for (const FrameSize form : {FrameSize{0, 600}, FrameSize{800, 0}, FrameSize{0, 0},
                                 FrameSize{-800, -600}, FrameSize{-800, 600}, FrameSize{800, -1},
                                 FrameSize{kLowest, kLowest}, FrameSize{kLowest, kHuge}}) {
        SetWebFormSize(form.width, form.height);
        EXPECT_EQ(state().view.WEB_BUF, nullptr) << form.width << ' ' << form.height;
        EXPECT_EQ(state().view.FormWidth, form.width);
        EXPECT_EQ(state().view.FormHeight, form.height);
        EXPECT_TRUE(state().view.ShowWidth < 1 || state().view.ShowHeight < 1);
    }
}

TEST_F(Form, OfMoreBytesThanAnIntHoldsHasNoBuffer) {
    stream({1920, 1080});
    for (const FrameSize form : {FrameSize{26755, 26755}, FrameSize{40000, 40000},
                                 FrameSize{65536, 65536}, FrameSize{kHuge, kHuge}}) {
        SetWebFormSize(form.width, form.height);
        EXPECT_EQ(state().view.WEB_BUF, nullptr) << form.width;
    }
}

TEST_F(Form, GetsItsBufferAfterImpossibleOnes) {
    stream({1920, 1080});
    SetWebFormSize(0, 0);
    SetWebFormSize(kHuge, kHuge);
    SetWebFormSize(800, 600);
    EXPECT_NE(state().view.WEB_BUF, nullptr);
    EXPECT_EQ(state().view.previewBytes, 800U * 600U * 3U);
    EXPECT_EQ(state().view.pZoomScale, 100.0 * 800 / 1920);
}

TEST_F(Form, DeclaredBeforeACameraIsOpenShowsNothing) {
    SetWebFormSize(800, 600);
    EXPECT_NE(state().view.WEB_BUF, nullptr);
    EXPECT_EQ(state().view.ShowWidth, 0);
    EXPECT_EQ(state().view.ShowHeight, 0);
    SetWebFormSize(0, 0);
    EXPECT_EQ(state().view.ShowWidth, 0);
    EXPECT_EQ(state().view.ShowHeight, 0);
}

TEST_F(Form, OfASuitableSizeIsCentredInTheDeclaredOne) {
    stream({1920, 1080});
    SetWebFormSize(800, 600);
    FuncSuitableSize(960, 600);
    EXPECT_EQ(state().view.pZoomScale, 50.0);
    EXPECT_EQ(state().view.pBestScale, 50.0);
    EXPECT_EQ(state().view.FormWidth, 800);
    EXPECT_EQ(state().view.ZoomWidth, 960);
    EXPECT_EQ(state().view.ZoomStartX, -80);
    EXPECT_EQ(state().view.FormStartX, -80);
    EXPECT_EQ(state().view.VideoOffsetX, -80);
    EXPECT_EQ(state().view.ShowWidth, 800);
    EXPECT_EQ(state().view.ZoomStartY, 30);
}

TEST_F(Form, IsNotTouchedWhenTheZoomedSizeIsRecomputed) {
    stream({1920, 1080});
    SetWebFormSize(800, 600);
    PreviewFields expected = currentFields();
    state().view.pZoomScale = expected.pZoomScale = 33.33;
    expected.ZoomWidth = 639;
    expected.ZoomHeight = 359;
    FuncCalculateShowWH();
    EXPECT_EQ(currentFields(), expected);
}

TEST_F(Form, HasAZoomedSizeForEveryScale) {
    stream({1920, 1080});
    for (const double scale : {std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300,
                               std::numeric_limits<double>::infinity()}) {
        state().view.pZoomScale = scale;
        FuncCalculateShowWH();
        EXPECT_EQ(state().view.ZoomWidth, scale > 0 ? kHuge : scale < 0 ? kLowest : 0) << scale;
    }
}

TEST_F(Form, IsNotTouchedByDisplayCenter) {
    stream({1920, 1080});
    SetWebFormSize(800, 600);
    Web_ZoomIn();
    const PreviewFields before = currentFields();
    FuncDisplayCenter(10, 20);
    EXPECT_EQ(currentFields(), before);
}

} // namespace
} // namespace doccam::test
