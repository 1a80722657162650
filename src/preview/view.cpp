#include "preview/view.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace doccam {
namespace {

constexpr double kZoomStep = 4.0;
constexpr double kLargestScale = 600.0;
constexpr int kLastTurn = 3;

constexpr int saturated(std::int64_t value) {
    return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

// Makes picture rows end on whole words.
constexpr int multipleOfFour(int side) {
    return side / 4 * 4;
}

constexpr int saturatedDifference(int from, int subtracted) {
    return saturated(std::int64_t{from} - subtracted);
}

constexpr int margin(int outer, int inner) {
    return saturated((std::int64_t{outer} - inner) / 2);
}

int scaledSide(double scale, int side) {
    return truncated(scale * side / 100.0);
}

// Uses the margin of the whole frame; centred() uses that of the slightly smaller picture.
ViewAxis fitted(ViewAxis axis) {
    axis.zoomStart = margin(axis.form, axis.zoom);
    axis.formStart = axis.zoomStart;
    axis.offset = axis.zoomStart;
    axis.show = multipleOfFour(std::min(axis.zoom, axis.form));
    return axis;
}

ViewAxis centred(ViewAxis axis) {
    axis.zoomStart = margin(axis.form, axis.zoom);
    axis.offset = axis.zoomStart;
    if (axis.zoom < axis.form) {
        axis.show = multipleOfFour(axis.zoom);
        axis.formStart = margin(axis.form, axis.show);
    } else {
        axis.show = multipleOfFour(axis.form);
        axis.formStart = 0;
    }
    return axis;
}

// Moves the picture within the form. At the near edge it stops but the pan keeps its value; at the
// far edge both stop.
ViewAxis pannedInForm(ViewAxis axis, int distance) {
    axis.show = multipleOfFour(axis.zoom);
    axis.zoomStart = 0;
    const int moved = saturated(std::int64_t{axis.offset} + distance);
    if (moved < 0) {
        axis.formStart = 0;
        return axis;
    }
    axis.offset = std::min(moved, saturatedDifference(axis.form, axis.zoom));
    axis.formStart = axis.offset;
    return axis;
}

// Moves the form over the frame. A pan far past the near end counts as one past the far end.
ViewAxis pannedOverFrame(ViewAxis axis, int distance) {
    std::int64_t moved = std::int64_t{axis.offset} + distance;
    if (axis.zoom - std::abs(moved) < axis.form) {
        moved = std::int64_t{axis.form} - axis.zoom;
    }
    axis.offset = saturated(std::min<std::int64_t>(moved, 0));
    axis.show = multipleOfFour(axis.form);
    axis.formStart = 0;
    axis.zoomStart = axis.offset;
    return axis;
}

ViewAxis panned(ViewAxis axis, int distance) {
    return axis.zoom < axis.form ? pannedInForm(axis, distance) : pannedOverFrame(axis, distance);
}

} // namespace

int truncated(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    return static_cast<int>(std::clamp(value, double{std::numeric_limits<int>::min()},
                                       double{std::numeric_limits<int>::max()}));
}

double fittingScale(FrameSize turned, FrameSize form) {
    if (turned.width < form.width && turned.height < form.height) {
        return kTrueScale;
    }
    const double formAspect = static_cast<double>(form.width) / form.height;
    const double frameAspect = static_cast<double>(turned.width) / turned.height;
    return formAspect > frameAspect ? 100.0 * form.height / turned.height
                                    : 100.0 * form.width / turned.width;
}

View rescaled(View view, FrameSize turned) {
    view.x.zoom = scaledSide(view.zoomScale, turned.width);
    view.y.zoom = scaledSide(view.zoomScale, turned.height);
    return view;
}

View bestFit(View view, FrameSize turned, FrameSize form) {
    view.zoomScale = fittingScale(turned, form);
    view.bestScale = view.zoomScale;
    view = rescaled(view, turned);
    view.x = fitted(view.x);
    view.y = fitted(view.y);
    return view;
}

View centred(View view) {
    view.x = centred(view.x);
    view.y = centred(view.y);
    return view;
}

View zoomedTo(double scale, View view, FrameSize turned) {
    view.zoomScale = scale;
    return centred(rescaled(view, turned));
}

double largerScale(const View& view) {
    return std::min(view.zoomScale + kZoomStep, kLargestScale);
}

double smallerScale(const View& view) {
    return std::max(view.zoomScale - kZoomStep, view.bestScale);
}

View panned(View view, int dx, int dy) {
    view.x = panned(view.x, dx);
    view.y = panned(view.y, dy);
    return view;
}

int turnedRight(int quarterTurns) {
    return quarterTurns >= kLastTurn ? 0 : quarterTurns + 1;
}

int turnedLeft(int quarterTurns) {
    return quarterTurns <= 0 ? kLastTurn : quarterTurns - 1;
}

} // namespace doccam
