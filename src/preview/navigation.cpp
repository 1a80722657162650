#include "preview/navigation.h"

#include "preview/view_state.h"

namespace doccam {
namespace {

constexpr int kNotStreaming = -1;

// Frames that may still be on their way in the old orientation.
constexpr int kFramesPerTurn = 2;

using Store = void (*)(record::View&, const View&);

template <typename Change>
int changeView(Store store, Change&& change) {
    LibraryState& library = state();
    if (!library.session.bKeep) {
        return kNotStreaming;
    }
    store(library.view, change(loadView(library.view)));
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
        library.settings.RotateFlag = kFramesPerTurn;
        library.settings.RotateAngle = turned(library.settings.RotateAngle);
        return centred(bestFit(view, shownFrameSize(library), {view.x.form, view.y.form}));
    });
}

} // namespace

int pan(int dx, int dy) {
    return changeView(storePlace, [&](const View& view) { return panned(view, dx, dy); });
}

int zoomIn() {
    return zoomTo(largerScale);
}

int zoomOut() {
    return zoomTo(smallerScale);
}

int showTrueSize() {
    return zoomTo([](const View&) { return kTrueScale; });
}

int showBestSize() {
    return zoomTo([](const View& view) { return view.bestScale; });
}

int turnViewLeft() {
    return turn(turnedLeft);
}

int turnViewRight() {
    return turn(turnedRight);
}

} // namespace doccam
