// Zooming, panning and turning the view.
#include "preview_fixture.h"

#include <doccam/doccam.hpp>

#include <functional>

namespace doccam::test {
namespace {

using Navigation = Preview;

TEST_F(Navigation, IsRefusedWhileNothingStreams) {
    streamLargeFrame();
    state().session.bKeep = false;
    const PreviewFields before = currentFields();
    for (const std::function<int()>& operation :
         {std::function<int()>(Web_ZoomIn), std::function<int()>(Web_ZoomOut),
          std::function<int()>(Web_TrueSize), std::function<int()>(Web_BestSize),
          std::function<int()>(Web_RotateL), std::function<int()>(Web_RotateR),
          std::function<int()>([] { return Web_SetMoveOffet(5, 5); })}) {
        EXPECT_EQ(operation(), -1);
        EXPECT_EQ(currentFields(), before);
    }
}

TEST_F(Navigation, ReturnsZeroWhileStreaming) {
    streamLargeFrame();
    EXPECT_EQ(Web_ZoomIn(), 0);
    EXPECT_EQ(Web_ZoomOut(), 0);
    EXPECT_EQ(Web_TrueSize(), 0);
    EXPECT_EQ(Web_BestSize(), 0);
    EXPECT_EQ(Web_RotateL(), 0);
    EXPECT_EQ(Web_RotateR(), 0);
    EXPECT_EQ(Web_SetMoveOffet(5, 5), 0);
}

TEST_F(Navigation, ZoomsInByFourPercentagePoints) {
    streamLargeFrame();
    state().view.pZoomScale = 50.0;
    Web_ZoomIn();
    EXPECT_EQ(state().view.pZoomScale, 54.0);
}

TEST_F(Navigation, ZoomsInUpToSixHundredPercent) {
    streamLargeFrame();
    state().view.pZoomScale = 598.0;
    Web_ZoomIn();
    EXPECT_EQ(state().view.pZoomScale, 600.0);
    Web_ZoomIn();
    EXPECT_EQ(state().view.pZoomScale, 600.0);
}

TEST_F(Navigation, ZoomsOutNoFurtherThanTheBestFit) {
    streamLargeFrame();
    const PreviewFields fitted = currentFields();
    Web_ZoomOut();
    EXPECT_EQ(currentFields(), fitted);
    state().view.pZoomScale = 54.0;
    state().view.pBestScale = 52.5;
    Web_ZoomOut();
    EXPECT_EQ(state().view.pZoomScale, 52.5);
    state().view.pZoomScale = 56.5;
    Web_ZoomOut();
    EXPECT_EQ(state().view.pZoomScale, 52.5);
    state().view.pZoomScale = 60.0;
    Web_ZoomOut();
    EXPECT_EQ(state().view.pZoomScale, 56.0);
}

TEST_F(Navigation, ShowsALargerFrameAtTrueSizeFromItsMiddle) {
    stream({1921, 1081});
    SetWebFormSize(801, 603);
    const double best = state().view.pBestScale;
    Web_TrueSize();
    EXPECT_EQ(currentFields(), (PreviewFields{.FormWidth = 801,
                                              .FormHeight = 603,
                                              .FormStartX = 0,
                                              .FormStartY = 0,
                                              .ShowWidth = 800,
                                              .ShowHeight = 600,
                                              .ZoomWidth = 1921,
                                              .ZoomHeight = 1081,
                                              .ZoomStartX = -560,
                                              .ZoomStartY = -239,
                                              .VideoOffsetX = -560,
                                              .VideoOffsetY = -239,
                                              .pZoomScale = 100.0,
                                              .pBestScale = best}));
}

TEST_F(Navigation, CentresASmallerFrameByThePicturesMargin) {
    streamSmallFrame();
    EXPECT_EQ(state().view.FormStartX, 199);
    Web_BestSize();
    EXPECT_EQ(currentFields(), (PreviewFields{.FormWidth = 800,
                                              .FormHeight = 600,
                                              .FormStartX = 200,
                                              .FormStartY = 150,
                                              .ShowWidth = 400,
                                              .ShowHeight = 300,
                                              .ZoomWidth = 402,
                                              .ZoomHeight = 302,
                                              .ZoomStartX = 199,
                                              .ZoomStartY = 149,
                                              .VideoOffsetX = 199,
                                              .VideoOffsetY = 149,
                                              .pZoomScale = 100.0,
                                              .pBestScale = 100.0}));
}

TEST_F(Navigation, ReturnsToTheBestSize) {
    streamLargeFrame();
    const PreviewFields fitted = currentFields();
    Web_ZoomIn();
    Web_SetMoveOffet(-20, -20);
    Web_BestSize();
    EXPECT_EQ(currentFields(), fitted);
}

TEST_F(Navigation, ZoomsFittingAndOverflowingDirectionsDifferently) {
    stream({1000, 300});
    SetWebFormSize(800, 600);
    Web_TrueSize();
    EXPECT_EQ(state().view.FormStartX, 0);
    EXPECT_EQ(state().view.ZoomStartX, -100);
    EXPECT_EQ(state().view.ShowWidth, 800);
    EXPECT_EQ(state().view.FormStartY, 150);
    EXPECT_EQ(state().view.ZoomStartY, 150);
    EXPECT_EQ(state().view.ShowHeight, 300);
}

TEST_F(Navigation, WrapsAroundFromZeroToTheLeftAndFromThreeToTheRight) {
    streamLargeFrame();
    for (const int angle : {3, 2, 1, 0}) {
        state().settings.RotateFlag = 0;
        Web_RotateL();
        EXPECT_EQ(state().settings.RotateAngle, angle);
        EXPECT_EQ(state().settings.RotateFlag, 2);
    }
    for (const int angle : {1, 2, 3, 0}) {
        state().settings.RotateFlag = 0;
        Web_RotateR();
        EXPECT_EQ(state().settings.RotateAngle, angle);
        EXPECT_EQ(state().settings.RotateFlag, 2);
    }
}

TEST_F(Navigation, TurnsFromInvalidAngles) {
    streamLargeFrame();
    const auto turned = [](int angle, int (*operation)()) {
        SetRotate(angle);
        operation();
        return state().settings.RotateAngle.load();
    };
    EXPECT_EQ(turned(7, Web_RotateL), 6);
    EXPECT_EQ(turned(7, Web_RotateR), 0);
    EXPECT_EQ(turned(-5, Web_RotateL), 3);
    EXPECT_EQ(turned(-5, Web_RotateR), -4);
    EXPECT_EQ(turned(kLowest, Web_RotateL), 3);
    EXPECT_EQ(turned(kHuge, Web_RotateR), 0);
}

TEST_F(Navigation, TurnsBackToTheBestFitOfTheNewOrientation) {
    stream({1920, 1080});
    SetWebFormSize(800, 600);
    Web_TrueSize();
    Web_SetMoveOffet(-100, -100);
    Web_RotateR();
    EXPECT_EQ(currentFields(), (PreviewFields{.FormWidth = 800,
                                              .FormHeight = 600,
                                              .FormStartX = 232,
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
                                              .RotateAngle = 1,
                                              .RotateFlag = 2}));
}

TEST_F(Navigation, OfImpossibleFormsShowsNothing) {
    stream({1920, 1080});
    for (const int side : {0, -1, kLowest}) {
        for (int (*const operation)() :
             {Web_ZoomIn, Web_ZoomOut, Web_TrueSize, Web_BestSize, Web_RotateL, Web_RotateR}) {
            SetWebFormSize(side, side);
            EXPECT_EQ(operation(), 0);
            EXPECT_EQ(Web_SetMoveOffet(kHuge, kLowest), 0);
            EXPECT_TRUE(state().view.ShowWidth < 1 && state().view.ShowHeight < 1)
                << currentFields();
        }
    }
}

} // namespace
} // namespace doccam::test
