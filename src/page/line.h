// A straight line in the plane.
#pragma once

#include <opencv2/core/types.hpp>

#include <cmath>

namespace doccam::page {

// All points p with p . normal = distance.
class Line {
  public:
    Line(cv::Point2d normal, double distance)
      : normal_(normal)
      , distance_(distance) {}

    static Line through(cv::Point2d from, cv::Point2d to) {
        const cv::Point2d direction = (to - from) / cv::norm(to - from);
        const cv::Point2d normal(-direction.y, direction.x);
        return {normal, from.dot(normal)};
    }

    cv::Point2d normal() const { return normal_; }

    cv::Point2d direction() const { return {-normal_.y, normal_.x}; }

    double distance() const { return distance_; }

    double along(cv::Point2d place) const { return place.dot(direction()); }

    cv::Point2d at(double along) const { return normal_ * distance_ + direction() * along; }

    // Where both meet; far away if they are parallel.
    cv::Point2d meet(const Line& other) const {
        const double sine = normal_.cross(other.normal_);
        constexpr double kParallel = 1e-9;
        if (std::abs(sine) < kParallel) {
            return {1e9, 1e9};
        }
        return {(distance_ * other.normal_.y - other.distance_ * normal_.y) / sine,
                (other.distance_ * normal_.x - distance_ * other.normal_.x) / sine};
    }

  private:
    cv::Point2d normal_; // of length 1
    double distance_;
};

} // namespace doccam::page
