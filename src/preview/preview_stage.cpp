#include "preview/preview_stage.h"

#include "preview/picture.h"
#include "preview/view_state.h"

namespace doccam {
namespace {

// Whether view's picture fits into room bytes and, if there is a frame, shows a part of it.
bool canShow(const View& view, const cv::Mat* frame, std::size_t room) {
    const std::size_t bytes = pictureBytes(view);
    if (bytes == 0 || bytes > room) {
        return false;
    }
    return frame == nullptr || liesInside(visiblePart(view), *frame);
}

PreviewPicture pictureOf(const View& view, unsigned char* pixels) {
    return {pixels, view.x.show, view.y.show, view.x.formStart, view.y.formStart};
}

bool showInForm(const record::View& kept, const View& view, const cv::Mat* frame,
                const DeliverPicture& deliver) {
    unsigned char* const pixels = kept.WEB_BUF.load(std::memory_order_acquire);
    if (pixels == nullptr ||
        !canShow(view, frame, kept.previewBytes.load(std::memory_order_relaxed))) {
        return true;
    }
    if (frame != nullptr) {
        renderPicture(*frame, view, pixels);
    }
    return deliver(pictureOf(view, pixels));
}

// The host receives the view's size whatever the destination's size, and may read that much.
bool showInDestination(const cv::Mat& destination, const View& view, const cv::Mat* frame,
                       const DeliverPicture& deliver) {
    if (destination.empty() ||
        !canShow(view, frame, destination.total() * destination.elemSize())) {
        return true;
    }
    if (frame != nullptr) {
        renderInto(*frame, view, destination);
    }
    return deliver(pictureOf(view, destination.data));
}

} // namespace

bool showPreview(const record::View& kept, const cv::Mat& destination, const cv::Mat* frame,
                 const DeliverPicture& deliver) {
    const View view = loadView(kept);
    return showInForm(kept, view, frame, deliver) &&
           showInDestination(destination, view, frame, deliver);
}

} // namespace doccam
