// From a crooked sheet to a straight, upright page.
#include "drawn_sheet.h"
#include "state/library_state.h"
#include "still_request.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <cmath>

namespace doccam {
namespace {

const cv::Size kFrame(1280, 960);

// The border added to a page, and the play of detection in steps of four pixels.
constexpr int kAdded = 20;
constexpr int kPlay = 8;

struct Sheet {
    cv::Size size;
    double degrees; // clockwise
};

std::vector<Sheet> sheets() {
    std::vector<double> angles;
    for (int degrees = -60; degrees <= 60; degrees += 5) {
        if (std::abs(degrees) != 45) {
            angles.push_back(degrees);
        }
    }
    for (const double degrees : {0.5, 2.0, 44.0, 46.0, 88.0, 89.5}) {
        angles.insert(angles.end(), {degrees, -degrees});
    }
    std::vector<Sheet> all;
    for (const double degrees : angles) {
        all.push_back({{640, 440}, degrees});
        all.push_back({{440, 640}, degrees});
    }
    return all;
}

std::string named(const testing::TestParamInfo<Sheet>& info) {
    const Sheet& sheet = info.param;
    return std::string(sheet.size.width > sheet.size.height ? "Wide" : "High") +
           (sheet.degrees < 0 ? "Minus" : "") +
           std::to_string(std::lround(std::abs(sheet.degrees) * 10)) + "Tenths";
}

cv::Mat turnedBack(const cv::Mat& page, int quartersClockwise) {
    cv::Mat back;
    if (quartersClockwise == 0) {
        return page;
    }
    cv::rotate(page, back,
               quartersClockwise > 0 ? cv::ROTATE_90_COUNTERCLOCKWISE : cv::ROTATE_90_CLOCKWISE);
    return back;
}

class StraightPage : public testing::TestWithParam<Sheet> {
  protected:
    ~StraightPage() override { state().sheet.CutPoint.fill(0); }

    cv::Mat taken(cv::Mat frame) {
        EXPECT_EQ(DrawingEdge(frame.data, frame.cols, frame.rows, 0), 0);
        EXPECT_EQ(capture(path_.data(), test::kFormat, kCropToSheet, frame), 0);
        return cv::imread(path_);
    }

    const test::ScratchFolder folder_;
    std::string path_ = folder_.file("page.bmp");
};

INSTANTIATE_TEST_SUITE_P(EachAngle, StraightPage, testing::ValuesIn(sheets()), named);

TEST_P(StraightPage, IsTheSheetTurnedToTheNearestQuarter) {
    const auto [size, degrees] = GetParam();
    const cv::Mat flat = test::flatSheet(size);
    const cv::Mat page = taken(test::sheetOnDesk(flat, degrees, kFrame));
    const cv::Mat upright = turnedBack(page, static_cast<int>(std::lround(degrees / 90)));
    ASSERT_FALSE(upright.empty());
    EXPECT_NEAR(test::leanOfText(upright), 0, 0.5);
    const cv::Point2d mark = test::placeOfMark(upright);
    EXPECT_LT(mark.x, 0.35);
    EXPECT_LT(mark.y, 0.35);
    EXPECT_NEAR(upright.cols, size.width + kAdded, kPlay);
    EXPECT_NEAR(upright.rows, size.height + kAdded, kPlay);
    EXPECT_LT(test::differenceFrom(flat, upright), 10);
}

// Halfway between two quarters either is correct.
TEST(StraightPageAt45Degrees, IsStraightEitherWay) {
    for (const int degrees : {-45, 45}) {
        SCOPED_TRACE(degrees);
        const test::ScratchFolder folder;
        std::string path = folder.file("page.bmp");
        cv::Mat frame = test::sheetOnDesk(test::flatSheet({640, 440}), degrees, kFrame);
        ASSERT_EQ(DrawingEdge(frame.data, frame.cols, frame.rows, 0), 0);
        capture(path.data(), test::kFormat, kCropToSheet, frame);
        const cv::Mat page = cv::imread(path);
        const bool turned = page.cols < page.rows;
        const cv::Mat upright = turnedBack(page, turned ? degrees / 45 : 0);
        EXPECT_NEAR(test::leanOfText(upright), 0, 0.5);
        EXPECT_LT(test::placeOfMark(upright).x, 0.35);
        EXPECT_LT(test::placeOfMark(upright).y, 0.35);
        EXPECT_NEAR(upright.cols, 640 + kAdded, kPlay);
    }
    state().sheet.CutPoint.fill(0);
}

} // namespace
} // namespace doccam
