// When a new sheet has come to rest before the camera.
#pragma once

#include <opencv2/core.hpp>

namespace doccam::host {

// Small enough to compare in every frame, large enough to tell one page of text from the next.
inline constexpr int kWatchedWidth = 320;

// The frame, red first, as a grey picture kWatchedWidth pixels wide.
cv::Mat reducedGrey(const cv::Mat& frame);

// The share of pixels, 0 to 1, in which two grey pictures of one size differ clearly; a change of
// the light as a whole does not count. 1 for pictures of different sizes.
double changedShare(const cv::Mat& one, const cv::Mat& other);

// Whether a grey picture shows more than an even surface.
bool showsSomething(const cv::Mat& grey);

// Sees the frames one after the other. Pictures are 8-bit grey, all of one size.
class SheetWatch {
  public:
    static constexpr int kCalmFrames = 10;

    // Takes note of the next frame. True when the picture has hardly changed for kCalmFrames, and
    // differs from the page last taken and from the picture last dismissed.
    bool seesNewPage(const cv::Mat& grey);

    // Whether the picture is still the one that has come to rest.
    bool isUnmoved(const cv::Mat& grey) const;

    // The picture at rest has been taken as a page, or shows none.
    void noteTaken();
    void noteDismissed();

  private:
    cv::Mat rest_;
    int calm_ = 0;
    cv::Mat taken_;
    cv::Mat dismissed_;
};

} // namespace doccam::host
