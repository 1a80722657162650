#include "drawn_shapes.h"

#include <opencv2/imgproc.hpp>

#include <stdexcept>

namespace doccam::test {
namespace {

constexpr int kWidth = 200;
constexpr int kHeight = 160;

cv::Mat emptyPicture() {
    return cv::Mat::zeros(kHeight, kWidth, CV_8UC1);
}

cv::Mat filledRect(cv::Rect rect) {
    cv::Mat picture = emptyPicture();
    picture(rect).setTo(255);
    return picture;
}

cv::Mat filled(const std::vector<cv::Point>& corners) {
    cv::Mat picture = emptyPicture();
    cv::fillConvexPoly(picture, corners, 255);
    return picture;
}

std::vector<cv::Point> diamondCorners(int radius) {
    const int x = kWidth / 2;
    const int y = kHeight / 2;
    return {{x - radius, y}, {x, y - radius}, {x + radius, y}, {x, y + radius}};
}

cv::Mat tiltedRect(cv::Size size, double degrees) {
    const cv::RotatedRect box({kWidth / 2.0F, kHeight / 2.0F}, size, static_cast<float>(degrees));
    cv::Point2f corners[4];
    box.points(corners);
    return filled({corners[0], corners[1], corners[2], corners[3]});
}

} // namespace

int ShapeMaker::between(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random_);
}

double ShapeMaker::angle() {
    return std::uniform_real_distribution<double>(-90, 90)(random_);
}

cv::Rect ShapeMaker::anyRect() {
    const cv::Size size(between(8, kWidth - 12), between(8, kHeight - 12));
    return {{between(2, kWidth - size.width - 2), between(2, kHeight - size.height - 2)}, size};
}

// Takes single pixels out of the edge, as noise does on an upright sheet.
cv::Mat ShapeMaker::ragged(cv::Rect rect) {
    cv::Mat picture = filledRect(rect);
    for (int bite = between(1, 12); bite > 0; --bite) {
        const int along = between(0, rect.width - 1);
        picture.at<std::uint8_t>(between(0, 1) != 0 ? rect.y : rect.br().y - 1, rect.x + along) = 0;
        const int down = between(0, rect.height - 1);
        picture.at<std::uint8_t>(rect.y + down, between(0, 1) != 0 ? rect.x : rect.br().x - 1) = 0;
    }
    return picture;
}

cv::Mat ShapeMaker::polygon() {
    std::vector<cv::Point> points;
    for (int count = between(3, 12); count > 0; --count) {
        points.emplace_back(between(2, kWidth - 3), between(2, kHeight - 3));
    }
    points.emplace_back(20, 20);
    points.emplace_back(20, 60);
    points.emplace_back(70, 40);
    std::vector<cv::Point> hull;
    cv::convexHull(points, hull);
    return filled(hull);
}

Contour ShapeMaker::make(Shape shape) {
    switch (shape) {
    case Shape::kUpright:
        return onlyContour(filledRect(anyRect()));
    case Shape::kSquare: {
        const int side = between(8, kHeight - 12);
        return onlyContour(filledRect({between(2, 9), between(2, 9), side, side}));
    }
    case Shape::kDiamond:
        return diamondCorners(between(5, kHeight / 2 - 3));
    case Shape::kRagged:
        return onlyContour(ragged(anyRect()));
    case Shape::kTilted:
        return onlyContour(tiltedRect({between(20, 110), between(20, 110)}, angle()));
    case Shape::kPolygon:
        return onlyContour(polygon());
    }
    throw std::logic_error("no such shape");
}

Contour onlyContour(const cv::Mat& picture) {
    std::vector<Contour> contours;
    cv::findContours(picture, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    std::size_t longest = 0;
    for (std::size_t i = 1; i < contours.size(); ++i) {
        longest = contours[i].size() > contours[longest].size() ? i : longest;
    }
    return contours.at(longest);
}

} // namespace doccam::test
