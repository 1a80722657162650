// The host's display area, the form.
#pragma once

#include "base/frame_size.h"
#include "state/parts.h"

namespace doccam {

// Declares the form and fits the frame into it. The session's first valid form sizes the preview
// buffer. Host thread.
void declareForm(LibraryState& library, int width, int height);

// Fits the frame into form, centred in the declared one.
void fitView(LibraryState& library, FrameSize form);

// Recomputes the whole frame's sides from the scale.
void rescaleView(LibraryState& library);

} // namespace doccam
