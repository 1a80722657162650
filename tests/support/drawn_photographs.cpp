// Draws a sheet as a camera would photograph it: uneven light, sensor noise, JPEG artefacts.
#include "photographs.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <vector>

namespace doccam::test {
namespace {

using Corners = std::vector<cv::Point2f>; // of the sheet, clockwise from the top left

const cv::Size kFrame(1632, 1224);

cv::Mat printedSheet(cv::Size size) {
    cv::Mat sheet(size, CV_8UC3, cv::Scalar(226, 234, 238));
    const int margin = size.width / 12;
    const int line = size.height / 26;
    int number = 0;
    for (int y = margin + line; y < size.height - margin; y += line) {
        // A paragraph ends at every fifth line.
        const char* const text = ++number % 5 == 0 ? "of the third of March."
                                                   : "The quick brown fox jumps "
                                                     "over the lazy dog and pays the invoice";
        cv::putText(sheet, text, {margin, y}, cv::FONT_HERSHEY_SIMPLEX, line / 52.0, {40, 36, 34},
                    2, cv::LINE_AA);
    }
    cv::circle(sheet, {size.width - 2 * margin, 2 * margin}, margin / 2, {60, 50, 190}, cv::FILLED,
               cv::LINE_AA);
    return sheet;
}

cv::Mat plainDesk(cv::Size size, int level) {
    return {size, CV_8UC3, cv::Scalar::all(level)};
}

// Boards with grain along them, and the dark floor past their edge.
cv::Mat woodenDesk(cv::Size size) {
    cv::RNG random(3);
    cv::Mat grain(size.height, size.width / 24, CV_8UC1);
    random.fill(grain, cv::RNG::UNIFORM, 0, 70);
    cv::resize(grain, grain, size, 0, 0, cv::INTER_CUBIC);
    cv::Mat wood;
    cv::merge(std::vector<cv::Mat>{grain + 90, grain + 130, grain + 165}, wood);
    wood.colRange(size.width * 6 / 7, size.width).setTo(cv::Scalar::all(20));
    return wood;
}

void lightUnevenly(cv::Mat& picture) {
    cv::Mat light(picture.size(), CV_32FC3);
    for (int y = 0; y < light.rows; ++y) {
        for (int x = 0; x < light.cols; ++x) {
            const float far = static_cast<float>(x) / static_cast<float>(light.cols) +
                              static_cast<float>(y) / static_cast<float>(light.rows);
            light.at<cv::Vec3f>(y, x) = cv::Vec3f::all(1.0F - 0.1F * far);
        }
    }
    cv::multiply(picture, light, picture, 1, CV_8U);
}

void addGrain(cv::Mat& picture) {
    cv::Mat grain(picture.size(), CV_16SC3);
    cv::RNG(11).fill(grain, cv::RNG::NORMAL, 0, 3);
    cv::add(picture, grain, picture, cv::noArray(), CV_8U);
}

cv::Mat photographOf(const cv::Mat& sheet, cv::Mat desk, const Corners& corners) {
    const auto width = static_cast<float>(sheet.cols);
    const auto height = static_cast<float>(sheet.rows);
    const cv::Mat view = cv::getPerspectiveTransform(
        Corners{{0, 0}, {width, 0}, {width, height}, {0, height}}, corners);
    cv::warpPerspective(sheet, desk, view, desk.size(), cv::INTER_LINEAR, cv::BORDER_TRANSPARENT);
    lightUnevenly(desk);
    cv::GaussianBlur(desk, desk, {3, 3}, 0);
    addGrain(desk);
    std::vector<uchar> jpeg;
    cv::imencode(".jpg", desk, jpeg, {cv::IMWRITE_JPEG_QUALITY, 90});
    return cv::imdecode(jpeg, cv::IMREAD_COLOR);
}

} // namespace

std::vector<Photograph> drawnPhotographs() {
    return {{"drawn-sheet-on-black.jpg",
             photographOf(printedSheet({1400, 1050}), plainDesk(kFrame, 12),
                          {{126, 72}, {1526, 96}, {1508, 1146}, {108, 1122}})},
            {"drawn-letter-in-perspective.jpg",
             photographOf(printedSheet({480, 600}), plainDesk({880, 660}, 60),
                          {{260, 60}, {600, 70}, {700, 600}, {170, 580}})},
            {"drawn-sheet-on-wood.jpg",
             photographOf(printedSheet({760, 1000}), woodenDesk(kFrame),
                          {{560, 60}, {1290, 240}, {1060, 1170}, {330, 990}})}};
}

} // namespace doccam::test
