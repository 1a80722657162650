// A side of a sheet, seen across.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>
#include <vector>

namespace doccam::page {

// Profiles across the side, at even distances: colours of the picture from outside to inside.
class SideProfiles {
  public:
    static constexpr int kCount = 160;

    SideProfiles(const cv::Mat& picture, cv::Point2d from, cv::Point2d to);

    // Where a profile meets the side.
    cv::Point2d placeOf(int profile) const;

    cv::Point2d inwards() const { return inwards_; }

    // The picture's colour on a profile, offset pixels inwards from the side.
    cv::Vec3f colourAt(int profile, double offset) const;

    // The direction in which most profiles change their colour inwards, within reach pixels.
    cv::Vec3f step(int reach) const;

    struct Edge {
        double offset;   // inwards from the side
        double strength; // levels per pixel
    };

    // The steepest change in that direction within reach of an expected offset.
    std::optional<Edge> edgeOf(int profile, const cv::Vec3f& step, double expected,
                               int reach) const;

  private:
    // The colours of a profile at the offsets from first to last.
    std::vector<cv::Vec3f> coloursOf(int profile, int first, int last) const;

    cv::Mat picture_;
    cv::Point2d from_;
    cv::Point2d along_;
    cv::Point2d inwards_;
};

} // namespace doccam::page
