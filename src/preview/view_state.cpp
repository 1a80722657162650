#include "preview/view_state.h"

namespace doccam {
namespace {

constexpr auto kRelaxed = std::memory_order_relaxed;

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

void storeBestFit(record::View& kept, const View& view) {
    kept.pBestScale.store(view.bestScale, kRelaxed);
    storeScale(kept, view);
}

FrameSize shownFrameSize(const LibraryState& library) {
    return turned({library.session.nWidth.load(kRelaxed), library.session.nHeight.load(kRelaxed)},
                  library.settings.RotateAngle.load(kRelaxed));
}

} // namespace doccam
