#include "codes/passes/upright_part.h"

#include "codes/corners.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace doccam::codes {

Corners UprightPart::inPicture(const Corners& corners) const {
    Corners result;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        result[i] = {back(0, 0) * corners[i].x + back(0, 1) * corners[i].y + back(0, 2),
                     back(1, 0) * corners[i].x + back(1, 1) * corners[i].y + back(1, 2)};
    }
    return result;
}

UprightPart uprightPart(const cv::Mat& grey, const Corners& place, double angle, PartSize wanted) {
    constexpr double kLargestSide = 1200; // pixels
    const cv::Point2d right(std::cos(angle), std::sin(angle));
    const cv::Point2d down(-right.y, right.x);
    const cv::Point2d middle = middleOf(place);
    double width = 0;
    double height = 0;
    for (const cv::Point2d corner : place) {
        width = std::max(width, std::abs((corner - middle).dot(right)) * 2 * wanted.around);
        height = std::max(height, std::abs((corner - middle).dot(down)) * 2 * wanted.around);
    }
    const double fitting = std::min(wanted.scale, kLargestSide / std::max(width, height));
    const cv::Point2d origin = middle - right * (width / 2) - down * (height / 2);
    UprightPart part;
    part.back = {right.x / fitting, down.x / fitting, origin.x,
                 right.y / fitting, down.y / fitting, origin.y};
    const cv::Size size(std::max(cvRound(width * fitting), 8),
                        std::max(cvRound(height * fitting), 8));
    cv::warpAffine(grey, part.grey, part.back, size, cv::INTER_CUBIC | cv::WARP_INVERSE_MAP,
                   cv::BORDER_REPLICATE);
    return part;
}

} // namespace doccam::codes
