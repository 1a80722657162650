#include "output/still/automatic_crop.h"

#include "docimage/sheet/edge_overlay.h"
#include "output/still/crop_geometry.h"
#include "output/still/page_preparation.h"
#include "output/still/straight_sheet.h"
#include "state/library_state.h"

#include <opencv2/imgproc.hpp>

#include <cstdio>

namespace doccam {
namespace {

// Moves the kept corners into the frame and returns the borders that they need around it.
FittedCorners fitKeptCorners(cv::Size frame, LibraryState& library) {
    const FittedCorners fitted = fitIntoFrame(cornersFrom(library.CutPoint.data()), frame);
    storeCorners(fitted.corners, library.CutPoint.data());
    std::printf("AA->img.cols,img.rows: %d,%d\r\n", frame.width, frame.height);
    return fitted;
}

// The sheet's box in a frame that has its borders; its size is kept.
cv::Rect boxAroundSheet(cv::Size bordered, LibraryState& library) {
    const cv::Rect box = enlargedBox(
        {library.CutImgStartX, library.CutImgStartY, library.CutImgW, library.CutImgH}, bordered);
    library.CutImgW = box.width;
    library.CutImgH = box.height;
    CV_Assert((box & cv::Rect({}, bordered)) == box);
    return box;
}

// The page's place in the picture of the straight sheet.
cv::Rect placeOfPage(cv::Size picture, const LibraryState& library) {
    const cv::Rect place = centredPage({library.CutLastW, library.CutLastH}, picture);
    std::printf("BB->img.cols,img.rows: %d,%d\r\n", picture.width, picture.height);
    std::printf("cx,cy,cw,ch: %d,%d,%d,%d\r\n", place.x, place.y, place.width, place.height);
    return place;
}

cv::Mat resizedToSteps(const cv::Mat& page) {
    const cv::Size size = inStepsOfFour(page.size());
    if (size == page.size()) {
        return page;
    }
    cv::Mat resized;
    cv::resize(page, resized, size, 0, 0, cv::INTER_LINEAR);
    return resized;
}

} // namespace

cv::Mat pageOfSheet(const cv::Mat& frame, LibraryState& library) {
    const FittedCorners fitted = fitKeptCorners(frame.size(), library);
    const float degrees = storeGeometry(fitted.corners, library);
    const cv::Rect box = boxAroundSheet(frame.size() + fitted.borders.added(), library);
    const StraightSheet sheet(frame, fitted.borders, box, degrees);
    const cv::Mat page = resizedToSteps(sheet.cut(placeOfPage(sheet.size(), library)));
    cleanAsSet(page, library);
    return page;
}

} // namespace doccam
