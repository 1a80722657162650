#include "scan/page_stack.h"

#include <utility>

namespace doccam::host {

PageStack::PageStack(CameraSession& session, PageDocument& document, PageRenderer& renderer,
                     const PageWay& way, std::string work, Note note)
  : session_(session)
  , document_(document)
  , renderer_(renderer)
  , way_(way)
  , work_(std::move(work))
  , note_(std::move(note)) {
    note_(count());
    for (const KeptPage& page : document_.pages()) {
        renderer_.begin(page);
    }
}

PageDraft PageStack::draft() {
    return draftPage(session_, way_, work_);
}

PageDraft PageStack::draft(FrameFile frame, cv::Size size, const std::optional<FoundSheet>& sheet) {
    return way_.byEngine ? draftOf(std::move(frame), size, sheet, way_) : draft();
}

void PageStack::add(const PageDraft& draft) {
    renderer_.begin(document_.add(document_.keep(draft.frame), draft.recipe, draft.origin));
    note_(count());
}

void PageStack::retakeLast(const PageDraft& draft) {
    document_.retake(document_.pages().back().id, document_.keep(draft.frame), draft.recipe,
                     draft.origin);
    renderer_.begin(document_.pages().back());
}

void PageStack::dropLast() {
    document_.remove(document_.pages().back().id);
    note_(count());
}

cv::Mat PageStack::lastFrame() const {
    try {
        return count() == 0 ? cv::Mat() : document_.frame(document_.pages().back().frame);
    } catch (const DamagedFrame&) {
        return {};
    }
}

bool PageStack::lastIsCropped() const {
    const KeptPage last = document_.pages().back();
    return last.origin.finished && last.origin.cropped;
}

} // namespace doccam::host
