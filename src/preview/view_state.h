// The view as the state record holds it.
#pragma once

#include "api/library_state.h"
#include "preview/view.h"

namespace doccam {

// Each field is read, or written, once. Another thread may change the view in between; a set read
// so may then combine two views.
View loadView(const LibraryState& library);
void storeView(LibraryState& library, const View& view);

// The size of the session's frames as they are shown, after the set rotation.
FrameSize shownFrameSize(const LibraryState& library);

} // namespace doccam
