#include "docimage/clean/black_edge.h"

#include "base/shared_work.h"
#include "docimage/clean/margins.h"
#include "docimage/clean/page_kernels.h"
#include "docimage/clean/sheet_outline.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <functional>
#include <vector>

namespace doccam {
namespace {

void requireColour(const cv::Mat& picture) {
    CV_Assert(!picture.empty() && picture.dims == 2 && picture.type() == CV_8UC3);
}

Marks marksOf(const WorkPlane& outline) {
    return {outline.unpaddedRow(0), outline.size()};
}

void whitenAround(const WorkPlane& outline, cv::Mat& picture) {
    paintMargins(picture, findMargins(marksOf(outline)));
}

// Adds the coloured pixels to the outline's marks.
void addColours(const cv::Mat& picture, WorkPlane& outline) {
    forEachStrip(Strips(picture.rows), [&](cv::Range part, int /*number*/) {
        std::vector<uchar> colours(static_cast<std::size_t>(picture.cols));
        for (int y = part.start; y < part.end; ++y) {
            widestKernels<allPageKernels>().markColours(picture.ptr(y), picture.cols,
                                                        colours.data());
            uchar* const marks = outline.unpaddedRow(y);
            std::transform(colours.begin(), colours.end(), marks, marks, std::bit_or<>());
        }
    });
}

} // namespace

void whitenMargins(cv::Mat picture) {
    requireColour(picture);
    whitenAround(sheetOutline(nearBlackGrey(picture)), picture);
}

void whitenMarginsByBrightness(cv::Mat picture) {
    requireColour(picture);
    whitenAround(sheetOutline(greyOf(picture)), picture);
}

WorkPlane marginMask(cv::Mat picture) {
    requireColour(picture);
    WorkPlane plane = sheetOutline(gammaGrey(picture));
    addColours(picture, plane);
    const Margins margins = findMargins(marksOf(plane));
    plane.clear();
    paintMargins(plane.rows(), margins);
    return plane;
}

} // namespace doccam
