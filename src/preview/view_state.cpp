#include "preview/view_state.h"

namespace doccam {
namespace {

constexpr auto kRelaxed = std::memory_order_relaxed;

} // namespace

View loadView(const LibraryState& library) {
    View view;
    view.x = {library.FormWidth.load(kRelaxed),  library.FormStartX.load(kRelaxed),
              library.ShowWidth.load(kRelaxed),  library.ZoomWidth.load(kRelaxed),
              library.ZoomStartX.load(kRelaxed), library.VideoOffsetX.load(kRelaxed)};
    view.y = {library.FormHeight.load(kRelaxed), library.FormStartY.load(kRelaxed),
              library.ShowHeight.load(kRelaxed), library.ZoomHeight.load(kRelaxed),
              library.ZoomStartY.load(kRelaxed), library.VideoOffsetY.load(kRelaxed)};
    view.zoomScale = library.pZoomScale.load(kRelaxed);
    view.bestScale = library.pBestScale.load(kRelaxed);
    return view;
}

void storeFrameSides(LibraryState& library, const View& view) {
    library.ZoomWidth.store(view.x.zoom, kRelaxed);
    library.ZoomHeight.store(view.y.zoom, kRelaxed);
}

void storePlace(LibraryState& library, const View& view) {
    library.FormStartX.store(view.x.formStart, kRelaxed);
    library.FormStartY.store(view.y.formStart, kRelaxed);
    library.ShowWidth.store(view.x.show, kRelaxed);
    library.ShowHeight.store(view.y.show, kRelaxed);
    library.ZoomStartX.store(view.x.zoomStart, kRelaxed);
    library.ZoomStartY.store(view.y.zoomStart, kRelaxed);
    library.VideoOffsetX.store(view.x.offset, kRelaxed);
    library.VideoOffsetY.store(view.y.offset, kRelaxed);
}

void storeScale(LibraryState& library, const View& view) {
    library.pZoomScale.store(view.zoomScale, kRelaxed);
    storeFrameSides(library, view);
    storePlace(library, view);
}

void storeBestFit(LibraryState& library, const View& view) {
    library.pBestScale.store(view.bestScale, kRelaxed);
    storeScale(library, view);
}

FrameSize shownFrameSize(const LibraryState& library) {
    return turned({library.nWidth.load(kRelaxed), library.nHeight.load(kRelaxed)},
                  library.RotateAngle.load(kRelaxed));
}

} // namespace doccam
