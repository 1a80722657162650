// The view as the state record holds it.
#pragma once

#include "preview/view.h"
#include "state/library_state.h"

namespace doccam {

// Each field is read, or written, once. Another thread may change the view in between; a set read
// so may then combine two views.
View loadView(const record::View& kept);

// Each operation stores the fields that it decides and no others: those of a change that another
// thread makes meanwhile stay. The form belongs to SetWebFormSize() alone.
void storeFrameSides(record::View& kept, const View& view); // the whole frame at the scale
void storePlace(record::View& kept, const View& view);      // picture, frame and pan in the form
void storeScale(record::View& kept, const View& view);      // the scale, and both of the above
void storeBestFit(record::View& kept, const View& view);    // the best scale, too

// The size of the session's frames as they are shown, after the set rotation.
FrameSize shownFrameSize(const LibraryState& library);

} // namespace doccam
