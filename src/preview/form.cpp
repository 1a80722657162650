#include "preview/form.h"

#include "base/guarded.h"
#include "preview/view_state.h"

#include <limits>
#include <memory>
#include <mutex>
#include <utility>

namespace doccam {
namespace {

// The bytes of a picture that fills the form; 0 for an impossible form.
int formBytes(int width, int height) {
    const std::int64_t pixels = FrameSize{width, height}.area();
    const bool possible = width > 0 && height > 0 && pixels <= std::numeric_limits<int>::max() / 3;
    return possible ? static_cast<int>(pixels) * 3 : 0;
}

// Only a session's first form sizes the buffer, as the streaming thread may be writing into it.
void providePreviewBuffer(LibraryState& library, int bytes) {
    record::View& view = library.view;
    if (bytes == 0 || view.WEB_BUF.load(std::memory_order_relaxed) != nullptr) {
        return;
    }
    const auto count = static_cast<std::size_t>(bytes);
    auto pixels = std::make_unique<unsigned char[]>(count);
    const std::lock_guard lock(library.session.framesMutex);
    if (view.WEB_BUF.load(std::memory_order_relaxed) == nullptr) {
        view.previewBytes.store(count, std::memory_order_relaxed);
        view.WEB_BUF.store(pixels.get(), std::memory_order_release);
        library.session.frames->preview = std::move(pixels);
    }
}

} // namespace

void declareForm(LibraryState& library, int width, int height) {
    library.view.FormWidth.store(width, std::memory_order_relaxed);
    library.view.FormHeight.store(height, std::memory_order_relaxed);
    guarded("SetWebFormSize", false, [&] {
        providePreviewBuffer(library, formBytes(width, height));
        return true;
    });
    fitView(library, {width, height});
}

void fitView(LibraryState& library, FrameSize form) {
    storeBestFit(library.view, bestFit(loadView(library.view), shownFrameSize(library), form));
}

void rescaleView(LibraryState& library) {
    storeFrameSides(library.view, rescaled(loadView(library.view), shownFrameSize(library)));
}

} // namespace doccam
