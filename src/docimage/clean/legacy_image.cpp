#include "docimage/clean/legacy_image.h"

#include "docimage/clean/black_edge.h"

#include <opencv2/core/core_c.h>

#include <cstring>
#include <memory>

namespace doccam {
namespace {

struct ReleaseImage {
    void operator()(IplImage* image) const { cvReleaseImage(&image); }
};

} // namespace

IplImage* newMarginMask(IplImage* picture) {
    const WorkPlane mask = marginMask(cv::cvarrToMat(picture));
    std::unique_ptr<IplImage, ReleaseImage> image(
        cvCreateImage(cvSize(mask.size()), IPL_DEPTH_8U, 1));
    std::memset(image->imageData, 0, static_cast<std::size_t>(image->imageSize));
    mask.rows().copyTo(cv::cvarrToMat(image.get()));
    return image.release();
}

} // namespace doccam
