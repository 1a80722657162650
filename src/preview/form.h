// The host's display area, the form.
#pragma once

#include "base/frame_size.h"
#include "state/parts.h"

namespace doccam {

// Declares the form and fits the frame into it. The session's first form that can hold a picture
// sizes the preview buffer. Host thread.
void declareForm(LibraryState& library, int width, int height);

// Fits the frame into form, centred in the declared one.
void fitView(LibraryState& library, FrameSize form);

// Computes the whole frame's sides anew from the scale.
void rescaleView(LibraryState& library);

} // namespace doccam
