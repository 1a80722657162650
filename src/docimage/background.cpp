// Whitening the paper: coloured marks are sharpened, everything grey that is paper becomes white.
#include "docimage/black_edge.h"
#include "docimage/pixel_colour.h"
#include "docimage/work_plane.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

namespace {

using doccam::isColoured;
using doccam::WorkPlane;

constexpr int kWhite = 255;

// 255 where a pixel is brighter than its surroundings less a little: paper, not print.
WorkPlane paperOf(const cv::Mat& page) {
    constexpr int kSurroundings = 179; // pixels, a square's side
    constexpr int kLessThanMean = 19;
    WorkPlane paper(page.size());
    cv::Mat& rows = paper.rows();
    cv::cvtColor(page, rows, cv::COLOR_RGB2GRAY);
    cv::adaptiveThreshold(rows, rows, kWhite, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY,
                          kSurroundings, kLessThanMean);
    return paper;
}

// Sharper along the columns and brighter by half: the weights add up to 1.5, on purpose.
cv::Mat sharpened(const cv::Mat& page) {
    const cv::Matx33f weights(0, -2, 0, //
                              0, 5, 0,  //
                              0, -1.5F, 0);
    cv::Mat result;
    cv::filter2D(page, result, CV_8U, weights, {-1, -1}, 0, cv::BORDER_DEFAULT);
    return result;
}

// A blue-first colour as the page shows it: what is clearly red becomes redder.
cv::Vec3b emphasised(const cv::Vec3b& colour) {
    constexpr int kClearlyRed = 81;
    constexpr int kLowered = 40;
    constexpr int kRaised = 80;
    if (colour[2] - colour[1] < kClearlyRed && colour[2] - colour[0] < kClearlyRed) {
        return colour;
    }
    return {cv::saturate_cast<uchar>(colour[0] - kLowered),
            cv::saturate_cast<uchar>(colour[1] - kLowered),
            cv::saturate_cast<uchar>(colour[2] + kRaised)};
}

// Grey print outside the margins keeps its pixels.
void whitenBackground(cv::Mat& page) {
    const WorkPlane paper = paperOf(page);
    const WorkPlane margins = doccam::marginMask(page);
    const cv::Mat colours = sharpened(page);
    for (int y = 0; y < page.rows; ++y) {
        auto* const row = page.ptr<cv::Vec3b>(y);
        const auto* const colourRow = colours.ptr<cv::Vec3b>(y);
        for (int x = 0; x < page.cols; ++x) {
            const bool inMargin = margins.unpaddedAt(x, y) == kWhite;
            if (!inMargin && isColoured(colourRow[x])) {
                row[x] = emphasised(colourRow[x]);
            } else if (inMargin || paper.unpaddedAt(x, y) == kWhite) {
                row[x] = cv::Vec3b::all(kWhite);
            }
        }
    }
}

} // namespace

void FN_DeleteBackcolor(cv::Mat src) {
    whitenBackground(src);
}
