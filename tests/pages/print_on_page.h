// A flat page laid over its rectified picture, point on point.
#pragma once

#include "scene/frames/drawn_frame.h"
#include "scene/views/camera_view.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::test {

class PrintOnPage {
  public:
    // found are the corners from which the upright page of that size was rectified, in the truth's
    // order.
    PrintOnPage(const virtualcam::TrueSheet& sheet, const virtualcam::Quad& found, cv::Size page);

    // The print as large and as crooked as the rectified page shows it.
    const cv::Mat& print() const { return print_; }

    // Where the page shows the region, without a rim of a few pixels.
    cv::Rect placeOf(const virtualcam::PrintedRegion& region) const;

    // What the paper look changes of each fill and highlighter, as delta E 2000.
    std::vector<double> fillDifferences(const cv::Mat& look) const;

    // The structural similarity with the print that each picture loses from page to look.
    std::vector<double> pictureLosses(const cv::Mat& page, const cv::Mat& look) const;

  private:
    const virtualcam::PrintedPage& page_;
    cv::Matx33d toPage_;
    cv::Mat print_;
};

} // namespace doccam::test
