#include "plain/page.h"

#include "output/still/crop_geometry.h"
#include "plain/black_edge.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>

namespace doccam::plain {
namespace {

const cv::Scalar kBlack(0, 0, 0, 0);

cv::Mat pageOf(const cv::Mat& picture) {
    cv::Mat page =
        picture(centredPage({state().sheet.CutLastW, state().sheet.CutLastH}, picture.size()));
    cv::copyMakeBorder(page, page, 8, 8, 8, 8, cv::BORDER_CONSTANT, kBlack);
    cv::Mat resized;
    cv::resize(page, resized, inStepsOfFour(page.size()), 0, 0, cv::INTER_LINEAR);
    return resized;
}

} // namespace

cv::Mat turned(const cv::Mat& picture, float degrees) {
    const float angle = -degrees;
    const double radians = 3.141592653589793 * angle / 180.0;
    const double sine = std::abs(std::sin(radians));
    const double cosine = std::abs(std::cos(radians));
    const cv::Size canvas(static_cast<int>(picture.rows * sine + picture.cols * cosine),
                          static_cast<int>(picture.cols * sine + picture.rows * cosine));
    cv::Mat map;
    cv::getRotationMatrix2D(cv::Point(picture.cols / 2, picture.rows / 2), angle, 1.0)
        .convertTo(map, CV_32F);
    map.at<float>(0, 2) += static_cast<float>((canvas.width - picture.cols) / 2);
    map.at<float>(1, 2) += static_cast<float>((canvas.height - picture.rows) / 2);
    cv::Mat result;
    cv::warpAffine(picture, result, map, canvas, cv::INTER_LINEAR, cv::BORDER_CONSTANT,
                   cv::Scalar(0));
    return result;
}

cv::Mat straightPage(cv::Mat frame, int* corners) {
    const FittedCorners fitted = fitIntoFrame(cornersFrom(corners), frame.size());
    storeCorners(fitted.corners, corners);
    const float angle = GetAngle(corners);
    cv::copyMakeBorder(frame, frame, fitted.borders.top, fitted.borders.bottom, fitted.borders.left,
                       fitted.borders.right, cv::BORDER_CONSTANT, kBlack);
    const LibraryState& library = state();
    const cv::Rect box = enlargedBox({library.sheet.CutImgStartX, library.sheet.CutImgStartY,
                                      library.sheet.CutImgW, library.sheet.CutImgH},
                                     frame.size());
    cv::Mat page = pageOf(turned(frame(box), angle));
    cv::cvtColor(page, page, cv::COLOR_RGB2BGR);
    return page;
}

void saveCleanPage(const cv::Mat& frame, int* corners, const std::string& path) {
    const cv::Mat page = straightPage(frame, corners);
    deleteBlackEdge(page);
    deleteBackcolor(page);
    cv::imwrite(path, page, {cv::IMWRITE_JPEG_QUALITY, 85});
}

} // namespace doccam::plain
