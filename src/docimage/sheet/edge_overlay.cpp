// The live outline of the sheet, and the page geometry that its corners give.
#include "api/library_state.h"
#include "docimage/clean/outline_search.h"
#include "docimage/sheet/contour_sequences.h"
#include "docimage/sheet/min_area_rectangle.h"
#include "docimage/sheet/outer_outlines.h"
#include "docimage/sheet/sheet_geometry.h"
#include "docimage/sheet/sheet_search.h"
#include "docimage/sheet/sheet_search_kernels.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

namespace {

using doccam::OuterOutlines;
using doccam::state;

constexpr int kNoOutline = -1;
constexpr int kNoSheet = -2;
constexpr int kDraw = 1;
constexpr int kLineWidth = 6;

const cv::Scalar kGreen(0, 255, 0, 0);

// What a search needs and leaves behind until the next one. Frames come one after the other, and
// ask for no new memory.
struct Search {
    doccam::SheetSearch sheets;
    doccam::ContourSequences sequences;
    doccam::MinAreaFit fit;
};

thread_local Search search;

// The outlines that may be sheets, the lowest on the picture first. The list of an earlier call
// points to what this search has overwritten.
void listLargeOnes(const OuterOutlines& outlines) {
    state().areaList.clear();
    state().cvSeqList.clear();
    search.sequences.reset(outlines.count());
    for (std::size_t i = outlines.count(); i-- > 0;) {
        const int area = doccam::enclosedArea(outlines[i]);
        if (area > doccam::kLargestSpeck) {
            state().areaList.push_back(area);
            state().cvSeqList.push_back(search.sequences.add(outlines[i]));
        }
    }
}

void drawOutline(cv::Mat& frame, const std::array<cv::Point2f, 4>& corners) {
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const cv::Point from = corners[i];
        const cv::Point to = corners[(i + 1) % corners.size()];
        cv::line(frame, from, to, kGreen, kLineWidth, cv::LINE_8);
    }
}

} // namespace

int DrawingEdge(unsigned char* data, int width, int height, int drawFlag) {
    if (data == nullptr || width < doccam::kReduction || height < doccam::kReduction) {
        return kNoOutline;
    }
    cv::Mat frameView(height, width, CV_8UC3, data);
    const OuterOutlines& outlines = search.sheets.outlinesIn(frameView);
    if (outlines.empty()) {
        return kNoOutline;
    }
    listLargeOnes(outlines);
    const auto largest = doccam::indexOfLargest(state().areaList);
    if (!largest) {
        return kNoSheet;
    }
    const auto points = doccam::pointsOf(*state().cvSeqList[*largest]);
    const auto corners = doccam::frameCorners(search.fit.around(points));
    doccam::storeCorners(doccam::wholePixels(corners), state().CutPoint.data());
    if (drawFlag == kDraw) {
        drawOutline(frameView, corners);
    }
    return 0;
}

float GetAngle(int* points) {
    if (points == nullptr) {
        return 0;
    }
    const doccam::SheetGeometry sheet = doccam::measureSheet(doccam::cornersFrom(points));
    state().CutImgStartX = sheet.bounds.x;
    state().CutImgStartY = sheet.bounds.y;
    state().CutImgW = sheet.bounds.width;
    state().CutImgH = sheet.bounds.height;
    state().CutLastW = sheet.page.width;
    state().CutLastH = sheet.page.height;
    return sheet.angle;
}
