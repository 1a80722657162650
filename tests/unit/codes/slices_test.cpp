// A linear code whose place is found in slices.
#include "read_picture.h"
#include "unit/barcode/code_drawing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace doccam::test {
namespace {

using testing::ElementsAre;

// Seen from so near that the bars run together.
cv::Mat inPerspective(const cv::Mat& code, float narrower) {
    const auto width = static_cast<float>(code.cols);
    const auto height = static_cast<float>(code.rows);
    const cv::Point2f flat[] = {{0, 0}, {width, 0}, {width, height}, {0, height}};
    const cv::Point2f seen[] = {{100 + narrower, 150},
                                {100 + width - narrower, 190},
                                {100 + width, 190 + height},
                                {100, 150 + height}};
    cv::Mat picture;
    cv::warpPerspective(code, picture, cv::getPerspectiveTransform(flat, seen),
                        {code.cols + 200, code.rows + 340}, cv::INTER_LINEAR, cv::BORDER_CONSTANT,
                        cv::Scalar(255));
    return picture;
}

TEST(SlicesOfBars, AreOneCode) {
    const cv::Mat drawn = drawCode(code128("Doc-JWD00CP7"), 4);
    cv::Mat tall;
    cv::resize(drawn, tall, {drawn.cols, 2 * drawn.rows}, 0, 0, cv::INTER_NEAREST);
    for (const float narrower : {20.0F, 40.0F, 60.0F}) {
        EXPECT_THAT(readTexts(inPerspective(tall, narrower)), ElementsAre("Code 128: Doc-JWD00CP7"))
            << narrower;
    }
}

} // namespace
} // namespace doccam::test
