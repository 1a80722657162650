// The live outline of the sheet, and the page geometry that its corners give.
#include "api/library_state.h"
#include "docimage/contour_sequences.h"
#include "docimage/outline_search.h"
#include "docimage/sheet_geometry.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

namespace {

using doccam::OuterContours;
using doccam::state;

constexpr int kNoOutline = -1;
constexpr int kNoSheet = -2;
constexpr int kDraw = 1;
constexpr int kLineWidth = 6;

const cv::Scalar kGreen(0, 255, 0, 0);

// What remains of an earlier call's list points into storage that is gone.
void listLargeOnes(const OuterContours& contours) {
    state().areaList.clear();
    state().cvSeqList.clear();
    for (CvSeq* contour : contours.list()) {
        const int area = doccam::enclosedArea(*contour);
        if (area > doccam::kLargestSpeck) {
            state().areaList.push_back(area);
            state().cvSeqList.push_back(contour);
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
    const cv::Mat grey = doccam::reducedGrey(frameView);
    cv::Mat binary = doccam::binarised(doccam::liftedContrast(grey, doccam::backgroundOf(grey)));
    const OuterContours contours(binary);
    if (contours.list().empty()) {
        return kNoOutline;
    }
    listLargeOnes(contours);
    const auto largest = doccam::indexOfLargest(state().areaList);
    if (!largest) {
        return kNoSheet;
    }
    const CvSeq& sheet = *state().cvSeqList[*largest];
    const auto corners = doccam::frameCorners(doccam::contourPoints(sheet));
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
