#include "output/still/still.h"

#include "docimage/clean/background.h"
#include "docimage/clean/black_edge.h"
#include "docimage/sheet/edge_overlay.h"
#include "output/still/crop_geometry.h"
#include "output/still/engine_still.h"
#include "output/still/save_image.h"
#include "output/still/still_settings.h"
#include "output/still/straight_sheet.h"
#include "state/library_state.h"

#include <opencv2/imgproc.hpp>

#include <cstdio>
#include <utility>

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

// Whitens the page's dark margins and then its background in place, each if its setting is on.
void cleanAsSet(const cv::Mat& page, const record::Settings& settings) {
    if (isOn(settings.isDelBlackedge)) {
        whitenMargins(page);
    }
    if (isOn(settings.isDelBcakColor)) {
        whitenBackground(page);
    }
}

// The sheet whose corners were found last, straightened. Moves the corners into the frame.
cv::Mat pageOfSheet(const cv::Mat& frame, record::Sheet& kept, const record::Settings& settings) {
    const FittedCorners fitted = fitKeptCorners(frame.size(), kept);
    const float degrees = storeGeometry(fitted.corners, kept);
    const cv::Rect box = boxAroundSheet(frame.size() + fitted.borders.added(), kept);
    const StraightSheet sheet(frame, fitted.borders, box, degrees);
    cv::Mat page = resizedToSteps(sheet.cut(placeOfPage(sheet.size(), kept)));
    cleanAsSet(page, settings);
    return page;
}

cv::Mat pageOfWholeFrame(const cv::Mat& frame, const record::Settings& settings, bool enlarge) {
    std::puts("capture->01");
    cv::Mat page = blueFirst(frame);
    std::puts("capture->02");
    cleanAsSet(page, settings);
    if (enlarge) {
        return enlarged(page, settings);
    }
    std::puts("capture->03");
    return page;
}

} // namespace

Still prepareStill(std::string path, int cropMode, const cv::Mat& frame, LibraryState& library,
                   const page::Sheet* live) {
    std::printf("capture->path:%s\n", path.c_str());
    const bool enlarge = library.session.isInsert1000M.load(std::memory_order_relaxed);
    if (library.settings.pageEngine.load(std::memory_order_relaxed) == kPageEngine) {
        return engineStill(std::move(path), cropMode, frame, {library.settings, enlarge, live});
    }
    restoreCorners(library.sheet);
    if (cropMode == kCropToSheet) {
        return {std::move(path), pageOfSheet(frame, library.sheet, library.settings)};
    }
    return {std::move(path), pageOfWholeFrame(frame, library.settings, enlarge), true};
}

void saveStill(const Still& still, const record::Settings& settings) {
    if (!still.isInColourMode) {
        savePage(still.path, still.page, settings);
    } else if (!still.page.empty()) {
        savePicture(still.path, still.page, settings);
    }
    if (still.ofWholeFrame) {
        std::puts("capture->04");
    }
}

} // namespace doccam
