#include "drawn_sheet.h"

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <stdexcept>

namespace doccam::test {
namespace {

const cv::Scalar kPaper = cv::Scalar::all(235);
const cv::Scalar kInk = cv::Scalar::all(40);
const cv::Scalar kDesk = cv::Scalar::all(60);
const cv::Scalar kRed(200, 30, 30);

constexpr int kMargin = 40;
constexpr int kLineHeight = 10;
constexpr int kLineStep = 34;
constexpr int kMarkSide = 50;

// Maximum distance between the page's centre and the sheet's, in pixels.
constexpr int kPlay = 6;

cv::Mat inkOf(const cv::Mat& page) {
    cv::Mat ink;
    cv::inRange(page, cv::Scalar::all(0), cv::Scalar::all(110), ink);
    return ink;
}

cv::Mat markOf(const cv::Mat& page) {
    cv::Mat mark;
    cv::inRange(page, cv::Scalar(0, 0, 140), cv::Scalar(90, 90, 255), mark);
    return mark;
}

// The surroundings of the paper are dark like text, but touch the page's edge.
bool touchesEdge(cv::Rect box, cv::Size page) {
    return box.x == 0 || box.y == 0 || box.br().x == page.width || box.br().y == page.height;
}

cv::Mat greyOf(const cv::Mat& picture, int code) {
    cv::Mat grey;
    cv::cvtColor(picture, grey, code);
    return grey;
}

} // namespace

cv::Mat flatSheet(cv::Size size) {
    cv::Mat sheet(size, CV_8UC3, kPaper);
    sheet(cv::Rect(kMargin, kMargin, kMarkSide, kMarkSide)).setTo(kRed);
    int length = size.width - 2 * kMargin;
    for (int y = 2 * kMargin + kMarkSide; y < size.height - kMargin; y += kLineStep) {
        sheet(cv::Rect(kMargin, y, length, kLineHeight)).setTo(kInk);
        length -= 12;
    }
    return sheet;
}

cv::Mat sheetOnDesk(const cv::Mat& flat, double degrees, cv::Size frame) {
    const double c = std::cos(degrees * CV_PI / 180);
    const double s = std::sin(degrees * CV_PI / 180);
    const cv::Point2d from((flat.cols - 1) / 2.0, (flat.rows - 1) / 2.0);
    const cv::Point2d to((frame.width - 1) / 2.0, (frame.height - 1) / 2.0);
    const cv::Mat map = (cv::Mat_<double>(2, 3) << c, -s, to.x - c * from.x + s * from.y, s, c,
                         to.y - s * from.x - c * from.y);
    cv::Mat picture;
    cv::warpAffine(flat, picture, map, frame, cv::INTER_LINEAR, cv::BORDER_CONSTANT, kDesk);
    cv::Mat noise(frame, CV_16SC3);
    cv::RNG(1).fill(noise, cv::RNG::NORMAL, 0, 2);
    cv::add(picture, noise, picture, cv::noArray(), CV_8U);
    return picture;
}

double leanOfText(const cv::Mat& page) {
    cv::Mat labels, boxes, centres;
    const int count = cv::connectedComponentsWithStats(inkOf(page), labels, boxes, centres);
    int longest = 0;
    int pixels = 0;
    for (int i = 1; i < count; ++i) {
        const cv::Rect box(boxes.at<int>(i, 0), boxes.at<int>(i, 1), boxes.at<int>(i, 2),
                           boxes.at<int>(i, 3));
        if (!touchesEdge(box, page.size()) && boxes.at<int>(i, cv::CC_STAT_AREA) > pixels) {
            longest = i;
            pixels = boxes.at<int>(i, cv::CC_STAT_AREA);
        }
    }
    if (longest == 0) {
        throw std::runtime_error("no text on the page");
    }
    const cv::Moments moments = cv::moments(labels == longest, true);
    return std::atan2(2 * moments.mu11, moments.mu20 - moments.mu02) / 2 * 180 / CV_PI;
}

cv::Point2d placeOfMark(const cv::Mat& page) {
    const cv::Moments moments = cv::moments(markOf(page), true);
    return {moments.m10 / moments.m00 / page.cols, moments.m01 / moments.m00 / page.rows};
}

double differenceFrom(const cv::Mat& flat, const cv::Mat& page) {
    const cv::Mat wanted = greyOf(flat, cv::COLOR_RGB2GRAY);
    const cv::Mat shown = greyOf(page, cv::COLOR_BGR2GRAY);
    const cv::Point middle((shown.cols - wanted.cols) / 2, (shown.rows - wanted.rows) / 2);
    double smallest = 255;
    for (int dy = -kPlay; dy <= kPlay; ++dy) {
        for (int dx = -kPlay; dx <= kPlay; ++dx) {
            const cv::Rect place(middle + cv::Point(dx, dy), wanted.size());
            if ((place & cv::Rect({}, shown.size())) == place) {
                smallest = std::min(smallest, cv::norm(shown(place), wanted, cv::NORM_L1) /
                                                  static_cast<double>(wanted.total()));
            }
        }
    }
    return smallest;
}

} // namespace doccam::test
