// Telling whether the picture has come to rest.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::host {

enum class Unrest { kMoving, kFlickering, kDark };

// Call with the frames in order, as 8-bit grey pictures of one size.
class Stillness {
  public:
    static constexpr int kCalmFrames = 10;

    // Processes the next picture. Returns the number of pictures before it, at most kCalmFrames, in
    // which nothing moved that has not been moving all along, as a trembling hand at the edge has.
    int see(const cv::Mat& grey);

    // Why the picture has not come to rest.
    Unrest unrest() const;

  private:
    void measure(const cv::Mat& grey);
    bool isCalm(const cv::Mat& changed) const;

    cv::Mat rest_;     // the first picture of the rest
    cv::Mat previous_; // the one before
    cv::Mat restless_; // CV_32F, a value per block: the part of the last pictures that changed it
    double noise_ = 0; // grey levels
    double stir_ = 0;  // the part of the blocks that changes from picture to picture
    int calm_ = 0;
};

// Whether an 8-bit grey picture shows more than a uniform surface.
bool showsSomething(const cv::Mat& grey);

// Whether it is so dark that a sheet could not be told from the desk.
bool isDark(const cv::Mat& grey);

} // namespace doccam::host
