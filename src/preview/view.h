// The preview's view: how the frame lies in the host's display area, the form.
//
// Pure values and the rules that turn one into another. Lengths are form pixels, scales percent.
// No input is refused: nonsense gives a view that cannot be rendered.
#pragma once

#include "base/frame_size.h"

namespace doccam {

// One direction of the view.
struct ViewAxis {
    int form = 0;      // the form's side
    int formStart = 0; // where in the form the picture begins
    int show = 0;      // the picture's side, a multiple of four
    int zoom = 0;      // the whole frame's side at the current scale
    int zoomStart = 0; // where the whole frame begins; negative when it begins outside the form
    int offset = 0;    // the pan

    bool operator==(const ViewAxis&) const = default;
};

struct View {
    ViewAxis x, y;
    double zoomScale = 50.0;
    double bestScale = 50.0; // the whole frame just fits

    bool operator==(const View&) const = default;
};

// The scale at which the turned frame just fits into the form, at most 100.
double fittingScale(FrameSize turned, FrameSize form);

// The same view with the whole frame's sides as the scale makes them.
View rescaled(View view, FrameSize turned);

// The whole frame at the scale that suits form, centred in the view's own form.
View bestFit(View view, FrameSize turned, FrameSize form);

// The view with the whole frame in the middle of the form.
View centred(View view);

// The view at another scale, centred.
View zoomedTo(double scale, View view, FrameSize turned);

inline constexpr double kTrueScale = 100.0; // a frame pixel is a form pixel

// The scale one step larger, up to 600, and one step smaller, down to the best one.
double largerScale(const View& view);
double smallerScale(const View& view);

// The view with the picture dragged by (dx, dy), as far as the form or the frame allows. A drag far
// beyond the beginning of a frame that overflows the form lands at the frame's end.
View panned(View view, int dx, int dy);

// The next quarter turn: right counts up from 0 to 3 and round, left down.
int turnedRight(int quarterTurns);
int turnedLeft(int quarterTurns);

} // namespace doccam
