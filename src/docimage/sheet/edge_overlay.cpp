#include "docimage/sheet/edge_overlay.h"

#include "docimage/sheet/min_area_rectangle.h"
#include "docimage/sheet/outer_outlines.h"
#include "docimage/sheet/sheet_search.h"
#include "docimage/sheet/sheet_search_kernels.h"
#include "state/sheet.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <span>

namespace doccam {
namespace {

// Outlines of up to this area, in pixels of the reduced copy, are no sheet.
constexpr int kLargestSpeck = 400;

constexpr int kLineWidth = 6;

const cv::Scalar kGreen(0, 255, 0, 0);

// Reused from frame to frame, so that searches do not allocate.
thread_local SheetSearch search;
thread_local MinAreaFit fit;

// The largest outline, of equal ones the lowest in the picture; empty if all are specks.
std::span<const cv::Point> largestOutline(const OuterOutlines& outlines) {
    std::span<const cv::Point> largest;
    int largestArea = kLargestSpeck;
    for (std::size_t i = outlines.count(); i-- > 0;) {
        const int area = enclosedArea(outlines[i]);
        if (area > largestArea) {
            largestArea = area;
            largest = outlines[i];
        }
    }
    return largest;
}

} // namespace

void drawOutline(cv::Mat& frame, const std::array<cv::Point2f, 4>& corners) {
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const cv::Point from = corners[i];
        const cv::Point to = corners[(i + 1) % corners.size()];
        cv::line(frame, from, to, kGreen, kLineWidth, cv::LINE_8);
    }
}

void storeEngineCorners(const SheetCorners& corners, record::Sheet& kept) {
    if (!kept.contractCutPoint) {
        kept.contractCutPoint = kept.CutPoint;
    }
    storeCorners(corners, kept.CutPoint.data());
}

// A crop by a rectangle may fail for the corners of a sheet seen in perspective.
void restoreCorners(record::Sheet& kept) {
    if (kept.contractCutPoint) {
        kept.CutPoint = *kept.contractCutPoint;
        kept.contractCutPoint.reset();
    }
}

std::array<cv::Point2f, 4> frameCorners(const cv::RotatedRect& box) {
    std::array<cv::Point2f, 4> corners = boxCorners(box);
    for (cv::Point2f& corner : corners) {
        corner *= static_cast<float>(kReduction);
    }
    return corners;
}

SheetCorners wholePixels(const std::array<cv::Point2f, 4>& corners) {
    SheetCorners whole;
    std::transform(corners.begin(), corners.end(), whole.begin(), [](cv::Point2f corner) {
        return cv::Point(static_cast<int>(corner.x), static_cast<int>(corner.y));
    });
    return whole;
}

SheetFound outlineSheet(cv::Mat frame, bool draw, record::Sheet& kept) {
    if (frame.data == nullptr || frame.cols < kReduction || frame.rows < kReduction) {
        return SheetFound::kNoOutline;
    }
    const OuterOutlines& outlines = search.outlinesIn(frame);
    if (outlines.empty()) {
        return SheetFound::kNoOutline;
    }
    const auto outline = largestOutline(outlines);
    if (outline.empty()) {
        return SheetFound::kNoSheet;
    }
    const auto corners = frameCorners(fit.around(outline));
    storeCorners(wholePixels(corners), kept.CutPoint.data());
    kept.contractCutPoint.reset();
    if (draw) {
        drawOutline(frame, corners);
    }
    return SheetFound::kSheet;
}

float storeGeometry(const SheetCorners& corners, record::Sheet& kept) {
    const SheetGeometry sheet = measureSheet(corners);
    kept.CutImgStartX = sheet.bounds.x;
    kept.CutImgStartY = sheet.bounds.y;
    kept.CutImgW = sheet.bounds.width;
    kept.CutImgH = sheet.bounds.height;
    kept.CutLastW = sheet.page.width;
    kept.CutLastH = sheet.page.height;
    return sheet.angle;
}

} // namespace doccam
