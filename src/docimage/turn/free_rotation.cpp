#include "docimage/turn/free_rotation.h"

#include "docimage/turn/turned_picture.h"

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

cv::Size canvasSize(cv::Size picture, double radians) {
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

cv::Mat rotated(const cv::Mat& picture, float degrees) {
    const TurnedRegion whole{picture, {}, picture.size()};
    cv::Mat turned;
    if (TurnedPicture::canRender(whole)) {
        const TurnedPicture rendered(whole, degrees);
        turned.create(rendered.size(), picture.type());
        rendered.render({{}, rendered.size()}, turned, SampleOrder::kKept);
        return turned;
    }
    const cv::Size canvas = canvasSize(picture.size(), radiansOf(-degrees));
    cv::warpAffine(picture, turned, turnOnto(canvas, picture.size(), -degrees), canvas,
                   cv::INTER_LINEAR, cv::BORDER_CONSTANT, cv::Scalar(0));
    return turned;
}

} // namespace doccam
