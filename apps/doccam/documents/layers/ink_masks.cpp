#include "documents/layers/ink_masks.h"

#include "documents/layers/fax_size.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::host {
namespace {

constexpr double kFineDpi = 300; // finer print needs no finer mask
constexpr double kFinestDpi = 400;
constexpr double kCoarsestDpi = 170;
constexpr double kLargestScale = 1.5;
constexpr double kMaximumPixels = 36e6;
constexpr double kMuchSmaller = 0.6;
constexpr double kBlurPerScale = 0.41; // pixels
constexpr double kGrowth = 0.85;       // bytes grow with this power of the scale

cv::Mat resized(const cv::Mat& grey, cv::Size size, double scale) {
    if (size == grey.size()) {
        return grey;
    }
    cv::Mat fine = grey;
    if (scale < 1 && scale > kMuchSmaller) {
        // Against ragged edges, which are hard to read and to encode.
        cv::GaussianBlur(grey, fine, {}, kBlurPerScale / scale);
    }
    cv::resize(fine, fine, size, 0, 0, scale > kMuchSmaller ? cv::INTER_CUBIC : cv::INTER_AREA);
    return fine;
}

} // namespace

InkMasks inkMasksAt(double scale, const cv::Mat& grey, const CoarsePage& coarse,
                    const InkLevels& levels) {
    const cv::Size size(std::max(1, cvRound(grey.cols * scale)),
                        std::max(1, cvRound(grey.rows * scale)));
    const cv::Mat fine = resized(grey, size, scale);
    InkMasks masks;
    masks.dark = fine < stretched(levels.darkBelow, coarse, size, scale);
    if (levels.anyLight) {
        masks.light = fine > stretched(levels.lightAbove, coarse, size, scale);
    }
    return masks;
}

InkMasks inkMasks(const cv::Mat& grey, const CoarsePage& coarse, const InkLevels& levels,
                  double dpi, std::size_t maximumBytes) {
    const double bounded = std::sqrt(kMaximumPixels / static_cast<double>(grey.total()));
    const double largest = std::min(kLargestScale, bounded);
    const double scale = std::min(std::clamp(dpi, kFineDpi, kFinestDpi) / dpi, largest);
    InkMasks masks = inkMasksAt(scale, grey, coarse, levels);
    const std::size_t bytes =
        faxSize(masks.dark) + (masks.light.empty() ? 0 : faxSize(masks.light));
    if (bytes > maximumBytes) {
        const double share = static_cast<double>(maximumBytes) / static_cast<double>(bytes);
        const double least = std::min(kCoarsestDpi / dpi, scale);
        masks =
            inkMasksAt(std::max(scale * std::pow(share, 1 / kGrowth), least), grey, coarse, levels);
    }
    return masks;
}

} // namespace doccam::host
