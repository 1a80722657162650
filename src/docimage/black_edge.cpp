#include "docimage/black_edge.h"

#include "docimage/margins.h"
#include "docimage/page_rows.h"
#include "docimage/sheet_outline.h"
#include "docimage/strips.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

#include <utility>

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

// The outline as it is read, and the coloured pixels; rows back to back.
cv::Mat outlineAndColours(const WorkPlane& outline, const cv::Mat& picture) {
    cv::Mat marks(picture.size(), CV_8UC1);
    forEachStrip(Strips(picture.rows), [&](cv::Range part, int /*number*/) {
        for (int y = part.start; y < part.end; ++y) {
            pageRows().markColours(picture.ptr(y), picture.cols, marks.ptr(y));
            const uchar* const outlineRow = outline.unpaddedRow(y);
            uchar* const row = marks.ptr(y);
            for (int x = 0; x < picture.cols; ++x) {
                row[x] |= outlineRow[x];
            }
        }
    });
    return marks;
}

} // namespace

void whitenMargins(cv::Mat picture) {
    requireColour(picture);
    whitenAround(sheetOutline(flattenedGrey(picture)), picture);
}

void whitenMarginsByBrightness(cv::Mat picture) {
    requireColour(picture);
    whitenAround(sheetOutline(greyOf(picture)), picture);
}

WorkPlane marginMask(cv::Mat picture) {
    requireColour(picture);
    const cv::Mat marks = outlineAndColours(sheetOutline(liftedGrey(picture)), picture);
    WorkPlane mask(picture.size());
    paintMargins(mask.rows(), findMargins({marks.data, marks.size()}));
    return mask;
}

} // namespace doccam

void FN_DeleteBlackEdge(cv::Mat src) {
    doccam::whitenMargins(std::move(src));
}
