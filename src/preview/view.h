// The preview's view: the frame's position in the host's display area, the form.
//
// Lengths are form pixels, scales percent. Nonsense gives a view that cannot be rendered.
#pragma once

#include "base/frame_size.h"

namespace doccam {

// One direction of the view.
struct ViewAxis {
    int form = 0;      // the form's side
    int formStart = 0; // start of the picture in the form
    int show = 0;      // the picture's side, a multiple of four
    int zoom = 0;      // the whole frame's side at the current scale
    int zoomStart = 0; // start of the whole frame; negative if outside the form
    int offset = 0;    // the pan

    bool operator==(const ViewAxis&) const = default;
};

struct View {
    ViewAxis x, y;
    double zoomScale = 50.0;
    double bestScale = 50.0; // at which the whole frame just fits

    bool operator==(const View&) const = default;
};

// Truncates toward zero, to the nearest int; 0 for NaN. A host may declare any form.
int truncated(double value);

// The scale at which the turned frame just fits into the form, at most 100.
double fittingScale(FrameSize turned, FrameSize form);

// The view with the whole frame's sides computed from the scale.
View rescaled(View view, FrameSize turned);

// The whole frame at the scale that fits form, centred in the view's own form.
View bestFit(View view, FrameSize turned, FrameSize form);

// The view with the whole frame in the middle of the form.
View centred(View view);

// The view at another scale, centred.
View zoomedTo(double scale, View view, FrameSize turned);

inline constexpr double kTrueScale = 100.0; // a frame pixel is a form pixel

// The next larger scale, up to 600, and the next smaller one, down to the best fit.
double largerScale(const View& view);
double smallerScale(const View& view);

// The view with the picture dragged by (dx, dy), as far as the form or the frame allows.
View panned(View view, int dx, int dy);

// The next quarter turn, 0 to 3 with wrap-around: right counts up, left down.
int turnedRight(int quarterTurns);
int turnedLeft(int quarterTurns);

} // namespace doccam
