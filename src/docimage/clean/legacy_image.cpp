#include "docimage/clean/legacy_image.h"

#include <opencv2/core/core_c.h>

#include <cstring>
#include <memory>

namespace doccam {
namespace {

struct ReleaseImage {
    void operator()(IplImage* image) const { cvReleaseImage(&image); }
};

} // namespace

cv::Mat viewOf(IplImage* image) {
    return cv::cvarrToMat(image);
}

IplImage* newImageOf(const WorkPlane& plane) {
    std::unique_ptr<IplImage, ReleaseImage> image(
        cvCreateImage(cvSize(plane.size()), IPL_DEPTH_8U, plane.rows().channels()));
    std::memset(image->imageData, 0, static_cast<std::size_t>(image->imageSize));
    plane.rows().copyTo(viewOf(image.get()));
    return image.release();
}

} // namespace doccam
