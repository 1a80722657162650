// The view in the state record, and the host's changes to it, which the next frame shows.
//
// Changes that return an int return 0, or -1 unchanged while no camera streams. Any thread.
#pragma once

#include "preview/view.h"
#include "state/parts.h"

namespace doccam {

// Reads each field once; while another thread changes the view it may combine two.
View loadView(const record::View& kept);

// Stores all of view but the form, which only declareForm() stores.
void storeBestFit(record::View& kept, const View& view);

// The size of the session's frames as shown, after the set rotation.
FrameSize shownFrameSize(const LibraryState& library);

// Fits the frame into the host's form; a session's first valid one sizes its buffer. Host thread.
void declareForm(LibraryState& library, int width, int height);

// Fits the frame into form, centred in the declared one.
void fitView(LibraryState& library, FrameSize form);

// Recomputes the whole frame's sides from the scale.
void rescaleView(LibraryState& library);

// Drags the picture by form pixels.
int pan(LibraryState& library, int dx, int dy);

// Shows the frame at another scale, centred.
int zoomTo(LibraryState& library, double (*scaleOf)(const View&));

// Turns the frames from a number of quarters to the next, and drops those still in flight.
int turnView(LibraryState& library, int (*next)(int));

} // namespace doccam
