#include "preview/navigation.h"

#include "preview/view_state.h"

namespace doccam {
namespace {

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

template <typename Scale>
int zoomTo(LibraryState& library, Scale&& scaleOf) {
    return changeView(library, storeScale, [&](const View& view) {
        return zoomedTo(scaleOf(view), view, shownFrameSize(library));
    });
}

int turn(LibraryState& library, int (*turned)(int)) {
    return changeView(library, storeBestFit, [&](const View& view) {
        library.settings.RotateFlag = kFramesPerTurn;
        int angle = library.settings.RotateAngle;
        while (!library.settings.RotateAngle.compare_exchange_weak(angle, turned(angle))) {
        }
        return centred(bestFit(view, shownFrameSize(library), {view.x.form, view.y.form}));
    });
}

} // namespace

int pan(LibraryState& library, int dx, int dy) {
    return changeView(library, storePlace, [&](const View& view) { return panned(view, dx, dy); });
}

int zoomIn(LibraryState& library) {
    return zoomTo(library, largerScale);
}

int zoomOut(LibraryState& library) {
    return zoomTo(library, smallerScale);
}

int showTrueSize(LibraryState& library) {
    return zoomTo(library, [](const View&) { return kTrueScale; });
}

int showBestSize(LibraryState& library) {
    return zoomTo(library, [](const View& view) { return view.bestScale; });
}

int turnViewLeft(LibraryState& library) {
    return turn(library, turnedLeft);
}

int turnViewRight(LibraryState& library) {
    return turn(library, turnedRight);
}

} // namespace doccam
