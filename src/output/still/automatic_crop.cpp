#include "output/still/automatic_crop.h"

#include "docimage/sheet/edge_overlay.h"
#include "output/still/crop_geometry.h"
#include "output/still/page_cleaning.h"
#include "output/still/straight_sheet.h"
#include "state/settings.h"
#include "state/sheet.h"

#include <opencv2/imgproc.hpp>

#include <cstdio>

namespace doccam {
namespace {

// Moves the kept corners into the frame and returns the borders that the frame needs for them.
FittedCorners fitKeptCorners(cv::Size frame, record::Sheet& kept) {
    const FittedCorners fitted = fitIntoFrame(cornersFrom(kept.CutPoint.data()), frame);
    storeCorners(fitted.corners, kept.CutPoint.data());
    std::printf("AA->img.cols,img.rows: %d,%d\r\n", frame.width, frame.height);
    return fitted;
}

// The sheet's box in the bordered frame; keeps its size.
cv::Rect boxAroundSheet(cv::Size bordered, record::Sheet& kept) {
    const cv::Rect box =
        enlargedBox({kept.CutImgStartX, kept.CutImgStartY, kept.CutImgW, kept.CutImgH}, bordered);
    kept.CutImgW = box.width;
    kept.CutImgH = box.height;
    CV_Assert((box & cv::Rect({}, bordered)) == box);
    return box;
}

// The page's position in the picture of the straightened sheet.
cv::Rect placeOfPage(cv::Size picture, const record::Sheet& kept) {
    const cv::Rect place = centredPage({kept.CutLastW, kept.CutLastH}, picture);
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

cv::Mat pageOfSheet(const cv::Mat& frame, record::Sheet& kept, const record::Settings& settings) {
    const FittedCorners fitted = fitKeptCorners(frame.size(), kept);
    const float degrees = storeGeometry(fitted.corners, kept);
    const cv::Rect box = boxAroundSheet(frame.size() + fitted.borders.added(), kept);
    const StraightSheet sheet(frame, fitted.borders, box, degrees);
    cv::Mat page = resizedToSteps(sheet.cut(placeOfPage(sheet.size(), kept)));
    cleanAsSet(page, settings);
    return page;
}

} // namespace doccam
