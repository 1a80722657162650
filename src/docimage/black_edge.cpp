#include "docimage/black_edge.h"

#include "docimage/margins.h"
#include "docimage/pixel_colour.h"
#include "docimage/sheet_outline.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

#include <utility>

namespace doccam {
namespace {

constexpr float kGamma = 0.4F;

void requireColour(const cv::Mat& picture) {
    CV_Assert(!picture.empty() && picture.dims == 2 && picture.type() == CV_8UC3);
}

// Paper and print become one grey, so that only the nearly black differs from them.
void flattenSheet(cv::Mat& picture) {
    constexpr int kNearlyBlack = 30;
    constexpr int kSheet = 128;
    for (cv::Vec3b& pixel : cv::Mat_<cv::Vec3b>(picture)) {
        if ((pixel[0] + pixel[1] + pixel[2]) / 3 > kNearlyBlack) {
            pixel = cv::Vec3b::all(kSheet);
        }
    }
}

cv::Mat lifted(cv::Mat& picture) {
    cv::Mat result;
    GammaCorrection(picture, result, kGamma);
    return result;
}

bool isOutline(const WorkPlane& outline, int x, int y) {
    return outline.unpaddedAt(x, y) == 255;
}

void whitenAround(const WorkPlane& outline, cv::Mat& picture) {
    paintMargins(picture, findMargins(picture.size(),
                                      [&](int x, int y) { return isOutline(outline, x, y); }));
}

} // namespace

void whitenMargins(cv::Mat picture) {
    requireColour(picture);
    cv::Mat flat = picture.clone();
    flattenSheet(flat);
    whitenAround(sheetOutline(lifted(flat)), picture);
}

void whitenMarginsByBrightness(cv::Mat picture) {
    requireColour(picture);
    whitenAround(sheetOutline(picture), picture);
}

WorkPlane marginMask(cv::Mat picture) {
    requireColour(picture);
    const WorkPlane outline = sheetOutline(lifted(picture));
    WorkPlane mask(picture.size());
    paintMargins(mask.rows(), findMargins(picture.size(), [&](int x, int y) {
                     return isOutline(outline, x, y) || isColoured(picture.at<cv::Vec3b>(y, x));
                 }));
    return mask;
}

} // namespace doccam

void FN_DeleteBlackEdge(cv::Mat src) {
    doccam::whitenMargins(std::move(src));
}
