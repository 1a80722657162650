// Moving the view while a camera streams. The next frame shows the result.
#include "preview/view_state.h"

#include <doccam/doccam.hpp>

namespace doccam {
namespace {

constexpr int kNotStreaming = -1;

// Frames that may still be on their way in the old orientation.
constexpr int kFramesPerTurn = 2;

using Store = void (*)(LibraryState&, const View&);

template <typename Change>
int changeView(Store store, Change&& change) {
    LibraryState& library = state();
    if (!library.bKeep) {
        return kNotStreaming;
    }
    store(library, change(loadView(library)));
    return 0;
}

template <typename Scale>
int zoomTo(Scale&& scaleOf) {
    return changeView(storeScale, [&](const View& view) {
        return zoomedTo(scaleOf(view), view, shownFrameSize(state()));
    });
}

int turn(int (*turned)(int)) {
    return changeView(storeBestFit, [&](const View& view) {
        LibraryState& library = state();
        library.RotateFlag = kFramesPerTurn;
        library.RotateAngle = turned(library.RotateAngle);
        return centred(bestFit(view, shownFrameSize(library), {view.x.form, view.y.form}));
    });
}

} // namespace
} // namespace doccam

int Web_SetMoveOffet(int dx, int dy) {
    using namespace doccam;
    return changeView(storePlace, [&](const View& view) { return panned(view, dx, dy); });
}

int Web_ZoomIn() {
    return doccam::zoomTo(doccam::largerScale);
}

int Web_ZoomOut() {
    return doccam::zoomTo(doccam::smallerScale);
}

int Web_TrueSize() {
    return doccam::zoomTo([](const doccam::View&) { return 100.0; });
}

int Web_BestSize() {
    return doccam::zoomTo([](const doccam::View& view) { return view.bestScale; });
}

int Web_RotateL() {
    return doccam::turn(doccam::turnedLeft);
}

int Web_RotateR() {
    return doccam::turn(doccam::turnedRight);
}
