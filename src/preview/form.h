// The host's display area, the form.
#pragma once

#include "base/frame_size.h"

namespace doccam {

// Declares the form and fits the frame into it. The session's first form that can hold a picture
// sizes the preview buffer. Host thread.
void declareForm(int width, int height);

// Fits the frame into form, centred in the declared one.
void fitView(FrameSize form);

// Computes the whole frame's sides anew from the scale.
void rescaleView();

} // namespace doccam
