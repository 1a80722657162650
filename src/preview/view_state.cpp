#include "preview/view_state.h"

#include "base/guarded.h"
#include "state/library_state.h"

#include <limits>
#include <memory>
#include <mutex>
#include <utility>

namespace doccam {
namespace {

constexpr auto kRelaxed = std::memory_order_relaxed;

// Each operation stores only the fields that it decides: another thread's changes survive.
void storeFrameSides(record::View& kept, const View& view) {
    kept.ZoomWidth.store(view.x.zoom, kRelaxed);
    kept.ZoomHeight.store(view.y.zoom, kRelaxed);
}

void storePlace(record::View& kept, const View& view) {
    kept.FormStartX.store(view.x.formStart, kRelaxed);
    kept.FormStartY.store(view.y.formStart, kRelaxed);
    kept.ShowWidth.store(view.x.show, kRelaxed);
    kept.ShowHeight.store(view.y.show, kRelaxed);
    kept.ZoomStartX.store(view.x.zoomStart, kRelaxed);
    kept.ZoomStartY.store(view.y.zoomStart, kRelaxed);
    kept.VideoOffsetX.store(view.x.offset, kRelaxed);
    kept.VideoOffsetY.store(view.y.offset, kRelaxed);
}

void storeScale(record::View& kept, const View& view) {
    kept.pZoomScale.store(view.zoomScale, kRelaxed);
    storeFrameSides(kept, view);
    storePlace(kept, view);
}

// The bytes of a picture that fills the form; 0 for an impossible form.
int formBytes(int width, int height) {
    const std::int64_t pixels = FrameSize{width, height}.area();
    const bool possible = width > 0 && height > 0 && pixels <= std::numeric_limits<int>::max() / 3;
    return possible ? static_cast<int>(pixels) * 3 : 0;
}

// Only a session's first form sizes the buffer, as the streaming thread may be writing into it.
void providePreviewBuffer(LibraryState& library, int bytes) {
    record::View& view = library.view;
    if (bytes == 0 || view.WEB_BUF.load(kRelaxed) != nullptr) {
        return;
    }
    const auto count = static_cast<std::size_t>(bytes);
    auto pixels = std::make_unique<unsigned char[]>(count);
    const std::lock_guard lock(library.session.framesMutex);
    if (view.WEB_BUF.load(kRelaxed) == nullptr) {
        view.previewBytes.store(count, kRelaxed);
        view.WEB_BUF.store(pixels.get(), std::memory_order_release);
        library.session.frames->preview = std::move(pixels);
    }
}

constexpr int kNotStreaming = -1;

// Frames that may still be in flight in the old orientation.
constexpr int kFramesPerTurn = 2;

using Store = void (*)(record::View&, const View&);

template <typename Change>
int changeView(LibraryState& library, Store store, Change&& change) {
    if (!library.session.bKeep) {
        return kNotStreaming;
    }
    store(library.view, change(loadView(library.view)));
    return 0;
}

} // namespace

View loadView(const record::View& kept) {
    View view;
    view.x = {kept.FormWidth.load(kRelaxed),  kept.FormStartX.load(kRelaxed),
              kept.ShowWidth.load(kRelaxed),  kept.ZoomWidth.load(kRelaxed),
              kept.ZoomStartX.load(kRelaxed), kept.VideoOffsetX.load(kRelaxed)};
    view.y = {kept.FormHeight.load(kRelaxed), kept.FormStartY.load(kRelaxed),
              kept.ShowHeight.load(kRelaxed), kept.ZoomHeight.load(kRelaxed),
              kept.ZoomStartY.load(kRelaxed), kept.VideoOffsetY.load(kRelaxed)};
    view.zoomScale = kept.pZoomScale.load(kRelaxed);
    view.bestScale = kept.pBestScale.load(kRelaxed);
    return view;
}

void storeBestFit(record::View& kept, const View& view) {
    kept.pBestScale.store(view.bestScale, kRelaxed);
    storeScale(kept, view);
}

FrameSize shownFrameSize(const LibraryState& library) {
    return turned({library.session.nWidth.load(kRelaxed), library.session.nHeight.load(kRelaxed)},
                  library.settings.RotateAngle.load(kRelaxed));
}

void declareForm(LibraryState& library, int width, int height) {
    library.view.FormWidth.store(width, kRelaxed);
    library.view.FormHeight.store(height, kRelaxed);
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

int pan(LibraryState& library, int dx, int dy) {
    return changeView(library, storePlace, [&](const View& view) { return panned(view, dx, dy); });
}

int zoomTo(LibraryState& library, double (*scaleOf)(const View&)) {
    return changeView(library, storeScale, [&](const View& view) {
        return zoomedTo(scaleOf(view), view, shownFrameSize(library));
    });
}

int turnView(LibraryState& library, int (*next)(int)) {
    return changeView(library, storeBestFit, [&](const View& view) {
        library.settings.RotateFlag = kFramesPerTurn;
        int angle = library.settings.RotateAngle;
        while (!library.settings.RotateAngle.compare_exchange_weak(angle, next(angle))) {
        }
        return centred(bestFit(view, shownFrameSize(library), {view.x.form, view.y.form}));
    });
}

} // namespace doccam
