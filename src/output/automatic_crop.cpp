#include "output/automatic_crop.h"

#include "api/library_state.h"
#include "output/crop_geometry.h"
#include "output/page_preparation.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

#include <cstdio>

namespace doccam {
namespace {

constexpr int kPageBorder = 8;

const cv::Scalar kBlack(0, 0, 0, 0);

// A frame that needs no border is shared, not copied.
cv::Mat withBorders(cv::Mat frame, const BorderAmounts& borders) {
    cv::copyMakeBorder(frame, frame, borders.top, borders.bottom, borders.left, borders.right,
                       cv::BORDER_CONSTANT, kBlack);
    return frame;
}

// Moves the kept corners into the frame and returns the borders that they need around it.
BorderAmounts shiftCorners(cv::Size frame) {
    int* kept = state().CutPoint.data();
    const FittedCorners fitted = fitIntoFrame(cornersFrom(kept), frame);
    storeCorners(fitted.corners, kept);
    return fitted.borders;
}

cv::Mat sheetRegionView(const cv::Mat& bordered) {
    LibraryState& library = state();
    const cv::Rect box =
        enlargedBox({library.CutImgStartX, library.CutImgStartY, library.CutImgW, library.CutImgH},
                    bordered.size());
    library.CutImgW = box.width;
    library.CutImgH = box.height;
    return bordered(box);
}

cv::Mat straightened(cv::Mat frame) {
    const BorderAmounts borders = shiftCorners(frame.size());
    std::printf("AA->img.cols,img.rows: %d,%d\r\n", frame.cols, frame.rows);
    const float angle = GetAngle(state().CutPoint.data());
    return rotateImage(sheetRegionView(withBorders(std::move(frame), borders)), angle);
}

// The border lies over what surrounds the page in the picture; only beyond the picture it is black.
cv::Mat pageWithBorder(const cv::Mat& picture) {
    const cv::Rect place = centredPage({state().CutLastW, state().CutLastH}, picture.size());
    std::printf("BB->img.cols,img.rows: %d,%d\r\n", picture.cols, picture.rows);
    std::printf("cx,cy,cw,ch: %d,%d,%d,%d\r\n", place.x, place.y, place.width, place.height);
    cv::Mat page = picture(place);
    cv::copyMakeBorder(page, page, kPageBorder, kPageBorder, kPageBorder, kPageBorder,
                       cv::BORDER_CONSTANT, kBlack);
    return page;
}

cv::Mat resizedToSteps(const cv::Mat& page) {
    cv::Mat resized;
    cv::resize(page, resized, inStepsOfFour(page.size()), 0, 0, cv::INTER_LINEAR);
    return resized;
}

} // namespace

void saveSheet(char* path, const cv::Mat& frame) {
    const cv::Mat page = blueFirst(resizedToSteps(pageWithBorder(straightened(frame))));
    cleanAsSet(page);
    SaveImage(path, page);
}

} // namespace doccam
