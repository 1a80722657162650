#include "preview/preview_stage.h"

#include "preview/picture.h"
#include "preview/view_state.h"
#include "state/view.h"

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

} // namespace

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
