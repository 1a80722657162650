#include "cleaning_pictures.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <vector>

namespace doccam::test {
namespace {

cv::Scalar greyFrom(cv::RNG& random, int from, int to) {
    return cv::Scalar::all(random.uniform(from, to));
}

cv::Scalar colourFrom(cv::RNG& random) {
    return {static_cast<double>(random.uniform(0, 256)),
            static_cast<double>(random.uniform(0, 256)),
            static_cast<double>(random.uniform(0, 256))};
}

cv::Point pointIn(cv::RNG& random, cv::Size size) {
    return {random.uniform(0, size.width), random.uniform(0, size.height)};
}

void drawShape(cv::Mat& picture, cv::RNG& random) {
    const cv::RotatedRect shape(
        cv::Point2f(pointIn(random, picture.size())),
        cv::Size2f(random.uniform(0.3F, 1.2F) * static_cast<float>(picture.cols),
                   random.uniform(0.3F, 1.2F) * static_cast<float>(picture.rows)),
        random.uniform(0.0F, 90.0F));
    cv::Point2f corners[4];
    shape.points(corners);
    const std::vector<cv::Point> outline(corners, corners + 4);
    cv::fillConvexPoly(picture, outline, greyFrom(random, 40, 250));
}

void addNoise(cv::Mat& picture, cv::RNG& random, int limit) {
    cv::Mat added(picture.size(), CV_8UC3);
    random.fill(added, cv::RNG::UNIFORM, 0, limit);
    picture += added;
}

} // namespace

cv::Mat sheetOnDesk(cv::Size size, cv::Rect area, const cv::Scalar& sheet) {
    cv::Mat picture(size, CV_8UC3, kBlackDesk);
    picture(area).setTo(sheet);
    return picture;
}

cv::Mat noise(cv::Size size, std::uint64_t seed) {
    cv::RNG random(seed);
    cv::Mat picture(size, CV_8UC3);
    random.fill(picture, cv::RNG::UNIFORM, 0, 256);
    return picture;
}

cv::Mat drawnScene(cv::Size size, std::uint64_t seed) {
    cv::RNG random(seed);
    cv::Mat picture(size, CV_8UC3, greyFrom(random, 0, 35));
    for (int i = random.uniform(1, 4); i > 0; --i) {
        drawShape(picture, random);
    }
    for (int i = 0; i < 12; ++i) {
        cv::circle(picture, pointIn(random, size), random.uniform(0, 6), greyFrom(random, 0, 256),
                   cv::FILLED);
    }
    for (int i = 0; i < 8; ++i) {
        cv::line(picture, pointIn(random, size), pointIn(random, size), colourFrom(random),
                 random.uniform(1, 5));
    }
    addNoise(picture, random, random.uniform(2, 60));
    return picture;
}

} // namespace doccam::test
