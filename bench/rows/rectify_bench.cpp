// Making a sheet upright, against OpenCV's warp of the same sheet to the same size.
#include "desk_frames.h"
#include "row.h"

#include <opencv2/imgproc.hpp>

#include <memory>

namespace doccam::bench {
namespace {

constexpr double kBound = 0.8;
constexpr int kRim = 3;            // pixels, in which the sheet's sides are interpolated
constexpr double kRounding = 0.75; // levels, in the mean: OpenCV rounds places to 1/32 pixel

using PageOwner = std::unique_ptr<DoccamPage, void (*)(DoccamPage*)>;

PageOwner rectified(const DeskFrame& frame) {
    const DoccamImage image = frame.image();
    const DoccamSheet sheet = frame.sheet();
    DoccamPage* page = nullptr;
    doccam_rectify(&image, &sheet, &page);
    return {page, doccam_page_free};
}

cv::Matx33d toPage(const DeskFrame& frame, cv::Size size) {
    const cv::Point2f low(-0.5F, -0.5F);
    const cv::Point2f high = low + cv::Point2f(size);
    const std::vector<cv::Point2f> from(frame.corners.begin(), frame.corners.end());
    const std::vector<cv::Point2f> to{low, {high.x, low.y}, high, {low.x, high.y}};
    return cv::getPerspectiveTransform(from, to);
}

bool isSamePage(const DoccamPage& ours, const cv::Mat& peer) {
    const cv::Mat page(ours.height, ours.width, CV_8UC3, ours.data, ours.stride);
    const cv::Rect inner(kRim, kRim, page.cols - 2 * kRim, page.rows - 2 * kRim);
    return page.size() == peer.size() && cv::norm(page(inner), peer(inner), cv::NORM_L1) <
                                             kRounding * 3 * static_cast<double>(inner.area());
}

Contest rectifying(const DeskFrame& frame) {
    const auto ours = std::make_shared<PageOwner>(rectified(frame));
    const cv::Size size((*ours)->width, (*ours)->height);
    const auto peer = std::make_shared<cv::Mat>();
    return {
        .ours = [=, &frame] { *ours = rectified(frame); },
        .peer =
            [=, &frame, map = toPage(frame, size)] {
                cv::warpPerspective(frame.pixels, *peer, map, size, cv::INTER_LINEAR);
            },
        .same = [=] { return isSamePage(**ours, *peer); },
    };
}

Row row(DeskKind kind) {
    return {.name = "rectify, " + nameOf(kind),
            .peer = "cv::warpPerspective",
            .bound = kBound,
            .contest = [kind](const Picture& /*picture*/) { return rectifying(deskFrame(kind)); }};
}

struct Entries {
    Entries() {
        for (const DeskKind kind : kDeskKinds) {
            const Entry entry(row(kind));
        }
    }
};

const Entries entries;

} // namespace
} // namespace doccam::bench
