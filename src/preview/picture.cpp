#include "preview/picture.h"

#include "base/pixel.h"
#include "preview/linear_scaler.h"
#include "preview/view_state.h"
#include "state/view.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdint>

namespace doccam {
namespace {

int inFramePixels(std::int64_t formPixels, double scale) {
    return truncated(static_cast<double>(formPixels * 100) / scale);
}

// A frame that begins inside the form is shown from its start.
int firstShown(const ViewAxis& axis, double scale) {
    return axis.zoomStart < 0 ? inFramePixels(-std::int64_t{axis.zoomStart}, scale) : 0;
}

bool liesInside(int first, int count, int side) {
    return first >= 0 && count >= 1 && std::int64_t{first} + count <= side;
}

// The rectangle of the frame that the view shows, in frame pixels.
cv::Rect visiblePart(const View& view) {
    return {firstShown(view.x, view.zoomScale), firstShown(view.y, view.zoomScale),
            inFramePixels(view.x.show, view.zoomScale), inFramePixels(view.y.show, view.zoomScale)};
}

bool liesInside(const cv::Rect& part, const cv::Mat& frame) {
    return liesInside(part.x, part.width, frame.cols) &&
           liesInside(part.y, part.height, frame.rows);
}

// OpenCV's own check adds in int, which overflows for a distant rectangle.
cv::Mat cutOut(const cv::Mat& frame, const cv::Rect& part) {
    CV_Assert(liesInside(part, frame));
    return frame(part);
}

// Whether view's picture fits into room bytes and, if there is a frame, shows a part of it.
bool canShow(const View& view, const cv::Mat* frame, std::size_t room) {
    const std::size_t bytes = pictureBytes(view);
    if (bytes == 0 || bytes > room) {
        return false;
    }
    return frame == nullptr || liesInside(visiblePart(view), *frame);
}

// Reused, so that pictures do not allocate.
thread_local LinearScaler scaler;

} // namespace

std::size_t pictureBytes(const View& view) {
    if (view.x.show < 1 || view.y.show < 1) {
        return 0;
    }
    return static_cast<std::size_t>(view.x.show) * static_cast<std::size_t>(view.y.show) *
           kChannels;
}

void renderPicture(const cv::Mat& frame, const View& view, unsigned char* out) {
    CV_Assert(frame.type() == CV_8UC3);
    const cv::Mat part = cutOut(frame, visiblePart(view));
    cv::Mat pictureView(view.y.show, view.x.show, CV_8UC3, out);
    scaler.scale(part, pictureView);
}

void renderInto(const cv::Mat& frame, const View& view, cv::Mat out) {
    const cv::Mat part = cutOut(frame, visiblePart(view));
    if (LinearScaler::canScale(part, out)) {
        scaler.scale(part, out);
    } else {
        cv::resize(part, out, out.size(), 0, 0, cv::INTER_LINEAR);
    }
}

bool showPreview(const record::View& kept, const cv::Mat& destination, const cv::Mat* frame,
                 const DeliverPicture& deliver) {
    const View view = loadView(kept);
    const auto show = [&](unsigned char* pixels, std::size_t room, const auto& render) {
        if (pixels == nullptr || !canShow(view, frame, room)) {
            return true;
        }
        if (frame != nullptr) {
            render();
        }
        return deliver({pixels, view.x.show, view.y.show, view.x.formStart, view.y.formStart});
    };
    unsigned char* const pixels = kept.WEB_BUF.load(std::memory_order_acquire);
    // The host receives the view's size whatever the destination's size, and may read that much.
    return show(pixels, kept.previewBytes.load(std::memory_order_relaxed),
                [&] { renderPicture(*frame, view, pixels); }) &&
           show(destination.data, destination.total() * destination.elemSize(),
                [&] { renderInto(*frame, view, destination); });
}

} // namespace doccam
