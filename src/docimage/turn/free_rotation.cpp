#include "docimage/turn/free_rotation.h"

#include "docimage/turn/turned_picture.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <limits>

namespace doccam {
namespace {

constexpr double kPi = 3.141592653589793;

int wholePixels(double length) {
    if (!(length <= std::numeric_limits<int>::max())) {
        CV_Error(cv::Error::StsOutOfRange, "the turned picture has no size");
    }
    return static_cast<int>(length);
}

} // namespace

double radiansOf(float degrees) {
    return kPi * degrees / 180.0;
}

cv::Size turnedSize(cv::Size picture, double radians) {
    const double sine = std::abs(std::sin(radians));
    const double cosine = std::abs(std::cos(radians));
    return {wholePixels(picture.height * sine + picture.width * cosine),
            wholePixels(picture.width * sine + picture.height * cosine)};
}

cv::Mat turnOnto(cv::Size canvas, cv::Size picture, double degrees) {
    const cv::Point middle(picture.width / 2, picture.height / 2);
    const cv::Point shift((canvas.width - picture.width) / 2, (canvas.height - picture.height) / 2);
    cv::Mat map;
    cv::getRotationMatrix2D(middle, degrees, 1.0).convertTo(map, CV_32F);
    map.at<float>(0, 2) += static_cast<float>(shift.x);
    map.at<float>(1, 2) += static_cast<float>(shift.y);
    return map;
}

} // namespace doccam

cv::Mat rotateImage(cv::Mat src, float angle) {
    const doccam::TurnedRegion whole{src, {}, src.size()};
    if (doccam::TurnedPicture::canRender(whole)) {
        const doccam::TurnedPicture picture(whole, angle);
        cv::Mat turned(picture.size(), src.type());
        picture.render({{}, picture.size()}, turned, doccam::SampleOrder::kKept);
        return turned;
    }
    const float degrees = -angle;
    const cv::Size canvas = doccam::turnedSize(src.size(), doccam::radiansOf(degrees));
    cv::Mat turned;
    cv::warpAffine(src, turned, doccam::turnOnto(canvas, src.size(), degrees), canvas,
                   cv::INTER_LINEAR, cv::BORDER_CONSTANT, cv::Scalar(0));
    return turned;
}
