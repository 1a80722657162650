// Outlines of filled shapes, as OpenCV's contour search lists them.
#pragma once

#include <opencv2/core.hpp>

#include <cstdint>
#include <random>
#include <vector>

namespace doccam::test {

using Contour = std::vector<cv::Point>;

enum class Shape { kUpright, kSquare, kDiamond, kRagged, kTilted, kPolygon };

inline constexpr Shape kShapes[] = {Shape::kUpright, Shape::kSquare, Shape::kDiamond,
                                    Shape::kRagged,  Shape::kTilted, Shape::kPolygon};

// Draws one shape after the other. Sizes, positions and angles are random but the same in each run.
class ShapeMaker {
  public:
    explicit ShapeMaker(unsigned seed)
      : random_(seed) {}

    Contour make(Shape shape);

  private:
    int between(int low, int high);
    double angle();

    cv::Rect anyRect();
    cv::Mat ragged(cv::Rect rect);
    cv::Mat polygon();

    std::mt19937 random_;
};

// The outer contour of the only shape on a picture.
Contour onlyContour(const cv::Mat& picture);

} // namespace doccam::test
