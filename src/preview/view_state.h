// Loading and storing the view in the state record.
#pragma once

#include "preview/view.h"
#include "state/library_state.h"

namespace doccam {

// Reads each field once. Another thread may change the view in between, so the result may combine
// two views.
View loadView(const record::View& kept);

// Each operation stores only the fields that it decides, so that another thread's simultaneous
// changes survive. Only SetWebFormSize() stores the form.
void storeFrameSides(record::View& kept, const View& view); // the whole frame at the scale
void storePlace(record::View& kept, const View& view);      // picture, frame and pan in the form
void storeScale(record::View& kept, const View& view);      // the scale, and both of the above
void storeBestFit(record::View& kept, const View& view);    // also the best scale

// The size of the session's frames as shown, after the set rotation.
FrameSize shownFrameSize(const LibraryState& library);

} // namespace doccam
