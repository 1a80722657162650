// Whitening the paper, step by step.
#include "plain/black_edge.h"

#include <opencv2/imgproc.hpp>

namespace doccam::plain {
namespace {

constexpr int kWhite = 255;

Plane paperOf(const cv::Mat& page) {
    Plane paper(page.size());
    cv::cvtColor(page, paper.rows, cv::COLOR_RGB2GRAY);
    cv::adaptiveThreshold(paper.rows, paper.rows, kWhite, cv::ADAPTIVE_THRESH_MEAN_C,
                          cv::THRESH_BINARY, 179, 19);
    return paper;
}

cv::Mat sharpened(const cv::Mat& page) {
    cv::Mat result;
    cv::filter2D(page, result, CV_8U, cv::Matx33f(0, -2, 0, 0, 5, 0, 0, -1.5F, 0), {-1, -1}, 0,
                 cv::BORDER_DEFAULT);
    return result;
}

cv::Vec3b emphasised(const cv::Vec3b& colour) {
    if (colour[2] - colour[1] < 81 && colour[2] - colour[0] < 81) {
        return colour;
    }
    return {cv::saturate_cast<uchar>(colour[0] - 40), cv::saturate_cast<uchar>(colour[1] - 40),
            cv::saturate_cast<uchar>(colour[2] + 80)};
}

} // namespace

void deleteBackcolor(cv::Mat page) {
    const Plane paper = paperOf(page);
    const Plane margins = marginMask(page);
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

} // namespace doccam::plain
