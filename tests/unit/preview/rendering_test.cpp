// The pictures that a view makes of a frame.
#include "frames.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

#include <algorithm>
#include <limits>

namespace doccam::test {
namespace {

constexpr unsigned char kUntouched = 0xA5;
constexpr std::size_t kBeyond = 997;
constexpr std::size_t kTrueSizeBytes = std::size_t{800} * 600 * 3;

class Rendering : public Preview {
  protected:
    // Renders frame through the set view and checks that nothing is written past the picture.
    static std::vector<unsigned char> rendered(const cv::Mat& frame) {
        const auto picture = static_cast<std::size_t>(state().view.ShowWidth) *
                             static_cast<std::size_t>(state().view.ShowHeight) * 3;
        std::vector<unsigned char> out(picture + kBeyond, kUntouched);
        VideoZoomToWeb(frame, out.data());
        EXPECT_EQ(
            std::count(out.begin() + static_cast<std::ptrdiff_t>(picture), out.end(), kUntouched),
            kBeyond);
        out.resize(picture);
        return out;
    }

    static cv::Mat asImage(std::vector<unsigned char>& picture) {
        return {state().view.ShowHeight, state().view.ShowWidth, CV_8UC3, picture.data()};
    }

    // True size, with the visible part starting at frame pixel (200, 60).
    static void showTrueSizePart() {
        setFields({.FormWidth = 800,
                   .FormHeight = 600,
                   .ShowWidth = 800,
                   .ShowHeight = 600,
                   .ZoomWidth = 1300,
                   .ZoomHeight = 900,
                   .ZoomStartX = -200,
                   .ZoomStartY = -60,
                   .pZoomScale = 100.0});
    }
};

bool samePixels(const cv::Mat& one, const cv::Mat& other) {
    return one.size() == other.size() && one.type() == other.type() &&
           cv::norm(one, other, cv::NORM_INF) == 0;
}

TEST_F(Rendering, AtTrueSizeIsACopyOfTheVisiblePart) {
    showTrueSizePart();
    const cv::Mat frame = noisyFrame({1300, 900});
    std::vector<unsigned char> picture = rendered(frame);
    EXPECT_TRUE(samePixels(asImage(picture), frame(cv::Rect(200, 60, 800, 600))));
}

TEST_F(Rendering, AtHalfSizeHalvesTheFrameRoundedDown) {
    setFields({.FormWidth = 400,
               .FormHeight = 300,
               .FormStartX = 40,
               .FormStartY = 30,
               .ShowWidth = 320,
               .ShowHeight = 240,
               .ZoomWidth = 321,
               .ZoomHeight = 242,
               .ZoomStartX = 39,
               .ZoomStartY = 29,
               .pZoomScale = 50.0});
    cv::Mat frame = noisyFrame({642, 484});
    std::vector<unsigned char> picture = rendered(frame);
    const cv::Mat image = asImage(picture);
    for (const cv::Point at : {cv::Point(0, 0), cv::Point(319, 239), cv::Point(17, 200)}) {
        const cv::Scalar mean = cv::mean(frame(cv::Rect(at * 2, cv::Size(2, 2))));
        for (int channel = 0; channel < 3; ++channel) {
            EXPECT_NEAR(image.at<cv::Vec3b>(at)[channel], mean[channel], 0.5) << at;
        }
    }
    frame.colRange(640, 642).setTo(0);
    frame.rowRange(480, 484).setTo(0);
    EXPECT_EQ(rendered(frame), picture);
}

TEST_F(Rendering, AtSixHundredPercentMagnifiesTheCut) {
    stream({640, 480});
    SetWebFormSize(400, 300);
    for (int times = 0; times < 200; ++times) {
        Web_ZoomIn();
    }
    ASSERT_EQ(state().view.pZoomScale, 600.0);
    ASSERT_EQ(state().view.ZoomStartX, -1720);
    ASSERT_EQ(state().view.ZoomStartY, -1290);

    const cv::Rect cut(286, 215, 66, 50);
    cv::Mat frame = noisyFrame({640, 480});
    const std::vector<unsigned char> picture = rendered(frame);
    EXPECT_EQ(picture, plainPicture(frame, currentFields()));
    const cv::Mat kept = frame(cut).clone();
    frame.setTo(77);
    kept.copyTo(frame(cut));
    EXPECT_EQ(rendered(frame), picture);
}

TEST_F(Rendering, KeepsThePixelsRedFirst) {
    stream({640, 480});
    SetWebFormSize(80, 60);
    const std::vector<unsigned char> picture =
        rendered(cv::Mat(480, 640, CV_8UC3, cv::Scalar(200, 30, 4)));
    for (std::size_t at = 0; at < picture.size(); at += 3) {
        ASSERT_EQ(picture[at], 200);
        ASSERT_EQ(picture[at + 1], 30);
        ASSERT_EQ(picture[at + 2], 4);
    }
}

TEST_F(Rendering, LeavesTheFrameUnchanged) {
    showTrueSizePart();
    const cv::Mat frame = noisyFrame({1300, 900});
    const cv::Mat before = frame.clone();
    rendered(frame);
    EXPECT_TRUE(samePixels(frame, before));
}

TEST_F(Rendering, OfPartOfALargerImageStaysWithinThatPart) {
    showTrueSizePart();
    const cv::Mat larger = noisyFrame({1500, 1000});
    const cv::Mat frame = larger(cv::Rect(50, 50, 1300, 900));
    EXPECT_EQ(rendered(frame), rendered(frame.clone()));
}

TEST_F(Rendering, AgreesWithThePlainRuleInEveryView) {
    cv::RNG random(20);
    int compared = 0;
    for (int round = 0; round < 300; ++round) {
        const FrameSize frame{random.uniform(16, 700), random.uniform(16, 500)};
        setFields({});
        stream(frame);
        SetWebFormSize(random.uniform(8, 500), random.uniform(8, 400));
        for (int times = random.uniform(0, 60); times > 0; --times) {
            Web_ZoomIn();
        }
        Web_SetMoveOffet(random.uniform(-600, 600), random.uniform(-600, 600));
        const PreviewFields view = currentFields();
        const cv::Mat image = noisyFrame(frame, round);
        if (view.ShowWidth < 4 || view.ShowHeight < 4 || view.ShowWidth * 100 < view.pZoomScale ||
            view.ShowHeight * 100 < view.pZoomScale) {
            continue;
        }
        ASSERT_EQ(rendered(image), plainPicture(image, view)) << view;
        ++compared;
    }
    EXPECT_GT(compared, 250);
}

TEST_F(Rendering, OfAPartOutsideTheFrameThrows) {
    showTrueSizePart();
    const int max = std::numeric_limits<int>::max();
    std::vector<unsigned char> out(kTrueSizeBytes, kUntouched);
    const std::vector<unsigned char> before = out;
    EXPECT_THROW(VideoZoomToWeb(noisyFrame({900, 1300}), out.data()), cv::Exception);
    EXPECT_THROW(VideoZoomToWeb(noisyFrame({1300, 659}), out.data()), cv::Exception);
    EXPECT_THROW(VideoZoomToWeb(noisyFrame({999, 900}), out.data()), cv::Exception);
    EXPECT_THROW(VideoZoomToWeb(cv::Mat(), out.data()), cv::Exception);
    for (const double scale :
         {0.0, -100.0, 1e-300, 1e300, 99.0, std::numeric_limits<double>::quiet_NaN(),
          std::numeric_limits<double>::infinity()}) {
        state().view.pZoomScale = scale;
        EXPECT_THROW(VideoZoomToWeb(noisyFrame({1000, 660}), out.data()), cv::Exception) << scale;
    }
    state().view.pZoomScale = 100.0;
    for (const int start : {-max - 1, -max, -max + 1}) {
        state().view.ZoomStartX = start;
        EXPECT_THROW(VideoZoomToWeb(noisyFrame({1300, 900}), out.data()), cv::Exception) << start;
        state().view.ZoomStartX = start / 100;
        EXPECT_THROW(VideoZoomToWeb(noisyFrame({1300, 900}), out.data()), cv::Exception) << start;
    }
    EXPECT_EQ(out, before);
}

TEST_F(Rendering, OfAnEmptyPictureThrows) {
    unsigned char out = kUntouched;
    for (const int side : {0, -4, std::numeric_limits<int>::min()}) {
        showTrueSizePart();
        state().view.ShowWidth = side;
        EXPECT_THROW(VideoZoomToWeb(noisyFrame({1300, 900}), &out), cv::Exception);
        showTrueSizePart();
        state().view.ShowHeight = side;
        EXPECT_THROW(VideoZoomToWeb(noisyFrame({1300, 900}), &out), cv::Exception);
    }
    EXPECT_EQ(out, kUntouched);
}

TEST_F(Rendering, OfAnImageOfAnotherTypeThrows) {
    showTrueSizePart();
    std::vector<unsigned char> out(kTrueSizeBytes, kUntouched);
    for (const int type : {CV_8UC1, CV_8UC4, CV_16UC3}) {
        EXPECT_THROW(VideoZoomToWeb(cv::Mat::zeros(900, 1300, type), out.data()), cv::Exception);
    }
    EXPECT_EQ(std::count(out.begin(), out.end(), kUntouched), kTrueSizeBytes);
}

TEST_F(Rendering, IntoAnImageTakesThatImagesSize) {
    showTrueSizePart();
    const cv::Mat frame = noisyFrame({1300, 900});
    cv::Mat out(300, 400, CV_8UC3, cv::Scalar::all(kUntouched));
    const unsigned char* const pixels = out.data;
    VideoZoomToWebEx(frame, out);
    EXPECT_EQ(out.data, pixels);

    PreviewFields halved = currentFields();
    halved.ShowWidth = 400;
    halved.ShowHeight = 300;
    halved.ZoomStartX /= 2;
    halved.ZoomStartY /= 2;
    halved.pZoomScale = 50.0;
    const std::vector<unsigned char> expected = plainPicture(frame, halved);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), out.data));
}

TEST_F(Rendering, IntoAnImageOfAnotherTypeLeavesItAlone) {
    showTrueSizePart();
    cv::Mat out(600, 800, CV_8UC1, cv::Scalar(kUntouched));
    VideoZoomToWebEx(noisyFrame({1300, 900}), out);
    EXPECT_EQ(out.type(), CV_8UC1);
    EXPECT_EQ(cv::countNonZero(out != kUntouched), 0);
}

TEST_F(Rendering, IntoAnImageThrowsForAPartOutsideTheFrame) {
    showTrueSizePart();
    cv::Mat out(600, 800, CV_8UC3, cv::Scalar::all(kUntouched));
    EXPECT_THROW(VideoZoomToWebEx(noisyFrame({900, 1300}), out), cv::Exception);
    EXPECT_THROW(VideoZoomToWebEx(noisyFrame({1300, 900}), cv::Mat()), cv::Exception);
    EXPECT_EQ(cv::countNonZero(out.reshape(1) != kUntouched), 0);
}

} // namespace
} // namespace doccam::test
