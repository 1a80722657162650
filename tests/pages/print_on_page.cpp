#include "print_on_page.h"

#include "colour_difference.h"
#include "scene/views/area_warp.h"
#include "scene/views/linear_light.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::test {

namespace {

using virtualcam::PrintedRegion;
using virtualcam::Quad;
using virtualcam::RegionKind;

constexpr double kRim = 4;     // pixels
constexpr int kSameColour = 3; // levels
constexpr int kFewPixels = 50;

Quad outerCorners(cv::Size size) {
    const double right = size.width - 0.5;
    const double bottom = size.height - 0.5;
    return {cv::Point2d(-0.5, -0.5), {right, -0.5}, {right, bottom}, {-0.5, bottom}};
}

cv::Matx33d mapping(const Quad& from, const Quad& to) {
    const std::vector<cv::Point2f> source(from.begin(), from.end());
    const std::vector<cv::Point2f> target(to.begin(), to.end());
    return cv::getPerspectiveTransform(source, target);
}

// The pixels of the most frequent colour of a fill, off its edges and off the words on it.
cv::Mat groundOf(const cv::Mat& fill) {
    cv::Vec3b ground;
    std::vector<cv::Mat> channels;
    cv::split(fill, channels);
    for (int i = 0; i < 3; ++i) {
        std::vector<unsigned char> levels(
            channels[static_cast<std::size_t>(i)].clone().reshape(1, 1));
        const auto middle = levels.begin() + static_cast<std::ptrdiff_t>(levels.size() / 2);
        std::nth_element(levels.begin(), middle, levels.end());
        ground[i] = *middle;
    }
    cv::Mat mask;
    const cv::Scalar step = cv::Scalar::all(kSameColour);
    cv::inRange(fill, cv::Scalar(ground) - step, cv::Scalar(ground) + step, mask);
    cv::erode(mask, mask, cv::Mat::ones(5, 5, CV_8U));
    return mask;
}

} // namespace

PrintOnPage::PrintOnPage(const virtualcam::TrueSheet& sheet, const Quad& found, cv::Size page)
  : page_(sheet.page)
  , toPage_(mapping(found, outerCorners(page)) *
            mapping(outerCorners(sheet.page.picture.size()), sheet.corners)) {
    cv::Mat linear(page, CV_32FC3, cv::Scalar::all(1));
    virtualcam::layDown(linear, sheet.page.picture, {}, toPage_);
    print_ = virtualcam::fromLinear(linear);
}

cv::Rect PrintOnPage::placeOf(const PrintedRegion& region) const {
    const cv::Rect2d box = region.box;
    const Quad corners = virtualcam::project(
        toPage_, Quad{box.tl(), {box.x + box.width, box.y}, box.br(), {box.x, box.y + box.height}});
    const cv::Point2d low(std::max(corners[0].x, corners[3].x) + kRim,
                          std::max(corners[0].y, corners[1].y) + kRim);
    const cv::Point2d high(std::min(corners[1].x, corners[2].x) - kRim,
                           std::min(corners[2].y, corners[3].y) - kRim);
    if (high.x <= low.x || high.y <= low.y) {
        return {};
    }
    return cv::Rect(cv::Point(low), cv::Point(high)) & cv::Rect({0, 0}, print_.size());
}

std::vector<double> PrintOnPage::fillDifferences(const cv::Mat& look) const {
    std::vector<double> differences;
    for (const PrintedRegion& region : page_.regions) {
        const cv::Rect place = placeOf(region);
        if (region.kind == RegionKind::kPicture || place.empty()) {
            continue;
        }
        const cv::Mat mask = groundOf(print_(place));
        if (cv::countNonZero(mask) >= kFewPixels) {
            differences.push_back(
                colourDifference(meanColour(print_(place), mask), meanColour(look(place), mask)));
        }
    }
    return differences;
}

std::vector<double> PrintOnPage::pictureLosses(const cv::Mat& page, const cv::Mat& look) const {
    std::vector<double> losses;
    for (const PrintedRegion& region : page_.regions) {
        const cv::Rect place = placeOf(region);
        if (region.kind == RegionKind::kPicture && !place.empty()) {
            losses.push_back(structuralSimilarity(print_(place), page(place)) -
                             structuralSimilarity(print_(place), look(place)));
        }
    }
    return losses;
}

} // namespace doccam::test
