#include "output/still/straight_sheet.h"

#include <opencv2/imgproc.hpp>

namespace doccam {
namespace {

constexpr int kPageBorder = 8;

const cv::Scalar kBlack(0, 0, 0, 0);

// Without borders the frame is shared instead of copied.
cv::Mat withBorders(cv::Mat frame, const BorderAmounts& borders) {
    cv::copyMakeBorder(frame, frame, borders.top, borders.bottom, borders.left, borders.right,
                       cv::BORDER_CONSTANT, kBlack);
    return frame;
}

// Around a submatrix OpenCV's borders would show the surrounding picture.
bool isWhole(const cv::Mat& frame) {
    return frame.type() == CV_8UC3 && !frame.empty() && !frame.isSubmatrix();
}

// Borders are as black as the surroundings of a turned picture, so the frame need not be copied.
TurnedRegion regionOf(const cv::Mat& frame, const BorderAmounts& borders, const cv::Rect& box) {
    const cv::Rect shown({borders.left, borders.top}, frame.size());
    const cv::Rect visible = box & shown;
    if (isWhole(frame) && !visible.empty()) {
        TurnedRegion region{frame(visible - shown.tl()), visible.tl() - box.tl(), box.size()};
        if (TurnedPicture::canRender(region)) {
            return region;
        }
    }
    return {withBorders(frame, borders)(box), {}, box.size()};
}

} // namespace

cv::Mat blueFirst(const cv::Mat& frame) {
    cv::Mat page;
    cv::cvtColor(frame, page, cv::COLOR_RGB2BGR);
    return page;
}

StraightSheet::StraightSheet(const cv::Mat& frame, const BorderAmounts& borders,
                             const cv::Rect& box, float degrees) {
    const TurnedRegion region = regionOf(frame, borders, box);
    if (TurnedPicture::canRender(region)) {
        rendered_.emplace(region, degrees);
    } else {
        turned_ = rotated(region.pixels, degrees);
    }
}

cv::Size StraightSheet::size() const {
    return rendered_ ? rendered_->size() : turned_.size();
}

cv::Mat StraightSheet::cut(const cv::Rect& place) const {
    CV_Assert((place & cv::Rect({}, size())) == place);
    return rendered_ ? render(place) : copy(place);
}

// The border shows the page's surroundings within the picture, and black beyond it.
cv::Mat StraightSheet::render(const cv::Rect& place) const {
    const cv::Rect bordered =
        place + cv::Size(2 * kPageBorder, 2 * kPageBorder) - cv::Point(kPageBorder, kPageBorder);
    const cv::Rect shown = bordered & cv::Rect({}, size());
    cv::Mat page(bordered.size(), CV_8UC3);
    if (shown != bordered) {
        page.setTo(kBlack);
    }
    cv::Mat partView = page(shown - bordered.tl());
    rendered_->render(shown, partView, SampleOrder::kReversed);
    return page;
}

cv::Mat StraightSheet::copy(const cv::Rect& place) const {
    cv::Mat page = turned_(place);
    cv::copyMakeBorder(page, page, kPageBorder, kPageBorder, kPageBorder, kPageBorder,
                       cv::BORDER_CONSTANT, kBlack);
    return blueFirst(page);
}

} // namespace doccam
