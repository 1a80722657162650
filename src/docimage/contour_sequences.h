// Outlines as the image library's C interface finds them. It is called here for them, and in
// legacy_image for C images, and nowhere else.
#pragma once

#include <opencv2/core/types.hpp>

#include <memory>
#include <vector>

struct CvMemStorage;
struct CvSeq;

namespace cv {
class Mat;
}

namespace doccam {

struct StorageRelease {
    void operator()(CvMemStorage* storage) const;
};

// The outer outlines of a picture, every point listed. The sequences live as long as this object.
class OuterContours {
  public:
    // Searches binary, 8-bit with one channel, where it stands: pixels of its one-pixel frame
    // become 0 and count as background, those of an outline are renumbered.
    explicit OuterContours(cv::Mat& binary);

    // In the order found: the lowest on the picture first.
    const std::vector<CvSeq*>& list() const { return list_; }

  private:
    std::unique_ptr<CvMemStorage, StorageRelease> storage_;
    std::vector<CvSeq*> list_;
};

// The area inside the contour, in pixels, fraction cut off.
int enclosedArea(const CvSeq& contour);

std::vector<cv::Point> contourPoints(const CvSeq& contour);

} // namespace doccam
