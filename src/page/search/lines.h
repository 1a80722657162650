// Straight lines that the edges of a reduced picture lie on.
#pragma once

#include "page/search/evidence.h"

#include <vector>

namespace doccam::page {

// All points p with p . normal = distance.
class Line {
  public:
    Line(cv::Point2d normal, double distance)
      : normal_(normal)
      , distance_(distance) {}

    cv::Point2d normal() const { return normal_; }

    cv::Point2d direction() const { return {-normal_.y, normal_.x}; }

    double distance() const { return distance_; }

    double along(cv::Point2d place) const { return place.dot(direction()); }

    cv::Point2d at(double along) const { return normal_ * distance_ + direction() * along; }

    // Where both meet; far away if they are parallel.
    cv::Point2d meet(const Line& other) const;

  private:
    cv::Point2d normal_; // of length 1
    double distance_;
};

// A line with how much of it lies on edges.
class SupportedLine : public Line {
  public:
    SupportedLine(const Line& line, const Evidence& evidence);

    // A border of the picture, beyond which a cut sheet goes on.
    SupportedLine(const Line& line, double always);

    bool isBorder() const { return counts_.empty(); }

    // The part of it between two places along it that lies on edges, 0 to 1: of what the picture
    // shows of it, and 0 if that is less than a third.
    double support(double from, double to) const;

  private:
    double always_ = 0;
    double start_ = 0;
    double firstSeen_ = 0;
    double lastSeen_ = 0;
    std::vector<int> counts_; // up to each pixel along the line
};

// The lines with most edges, the best first, then the picture's borders.
std::vector<SupportedLine> linesIn(const Evidence& evidence);

} // namespace doccam::page
