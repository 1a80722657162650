#include "output/still/automatic_crop.h"

#include "docimage/sheet/edge_overlay.h"
#include "docimage/turn/free_rotation.h"
#include "docimage/turn/turned_picture.h"
#include "output/still/crop_geometry.h"
#include "output/still/page_preparation.h"
#include "state/library_state.h"

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

// The sheet's box in a frame that has its borders.
cv::Rect sheetBox(cv::Size bordered) {
    LibraryState& library = state();
    const cv::Rect box = enlargedBox(
        {library.CutImgStartX, library.CutImgStartY, library.CutImgW, library.CutImgH}, bordered);
    library.CutImgW = box.width;
    library.CutImgH = box.height;
    CV_Assert((box & cv::Rect({}, bordered)) == box);
    return box;
}

// Whether the frame and its borders are all there is: around a part of a larger picture borders
// would show more of it.
bool isWhole(const cv::Mat& frame) {
    return frame.type() == CV_8UC3 && !frame.empty() && !frame.isSubmatrix();
}

// Borders are black, as what lies around a turned picture's pixels: the frame need not be copied
// for them.
TurnedRegion sheetRegion(const cv::Mat& frame, const BorderAmounts& borders) {
    const cv::Rect shown({borders.left, borders.top}, frame.size());
    const cv::Size bordered(borders.left + frame.cols + borders.right,
                            borders.top + frame.rows + borders.bottom);
    const cv::Rect box = sheetBox(bordered);
    if (isWhole(frame)) {
        const cv::Rect visible = box & shown;
        if (!visible.empty()) {
            TurnedRegion region{frame(visible - shown.tl()), visible.tl() - box.tl(), box.size()};
            if (TurnedPicture::canRender(region)) {
                return region;
            }
        }
    }
    return {withBorders(frame, borders)(box), {}, box.size()};
}

// The page's place in the turned picture.
cv::Rect placeOfPage(cv::Size picture) {
    const cv::Rect place = centredPage({state().CutLastW, state().CutLastH}, picture);
    std::printf("BB->img.cols,img.rows: %d,%d\r\n", picture.width, picture.height);
    std::printf("cx,cy,cw,ch: %d,%d,%d,%d\r\n", place.x, place.y, place.width, place.height);
    CV_Assert((place & cv::Rect({}, picture)) == place);
    return place;
}

// The border shows what surrounds the page in the picture; only beyond the picture it is black.
cv::Mat pageOf(const TurnedPicture& picture) {
    const cv::Rect place = placeOfPage(picture.size());
    const cv::Rect bordered =
        place + cv::Size(2 * kPageBorder, 2 * kPageBorder) - cv::Point(kPageBorder, kPageBorder);
    const cv::Rect shown = bordered & cv::Rect({}, picture.size());
    cv::Mat page(bordered.size(), CV_8UC3);
    if (shown != bordered) {
        page.setTo(kBlack);
    }
    cv::Mat partView = page(shown - bordered.tl());
    picture.render(shown, partView, SampleOrder::kReversed);
    return page;
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

// The same for frames of another kind than the camera's.
cv::Mat pageFallback(const cv::Mat& picture) {
    cv::Mat page = picture(placeOfPage(picture.size()));
    cv::copyMakeBorder(page, page, kPageBorder, kPageBorder, kPageBorder, kPageBorder,
                       cv::BORDER_CONSTANT, kBlack);
    return page;
}

// The sheet, straight and with blue first.
cv::Mat straightPage(const cv::Mat& frame) {
    const BorderAmounts borders = shiftCorners(frame.size());
    std::printf("AA->img.cols,img.rows: %d,%d\r\n", frame.cols, frame.rows);
    const float angle = storeGeometry(cornersFrom(state().CutPoint.data()), state());
    const TurnedRegion region = sheetRegion(frame, borders);
    if (!TurnedPicture::canRender(region)) {
        return blueFirst(resizedToSteps(pageFallback(rotated(region.pixels, angle))));
    }
    return resizedToSteps(pageOf(TurnedPicture(region, angle)));
}

} // namespace

cv::Mat pageOfSheet(const cv::Mat& frame) {
    cv::Mat page = straightPage(frame);
    cleanAsSet(page);
    return page;
}

} // namespace doccam
