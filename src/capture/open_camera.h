// Opening a session: the list of steps, their lines and result codes.
#pragma once

#include "base/frame_size.h"

namespace doccam {

// Opens the camera at index for frames of size and starts the streaming thread. 0 or the fixed code
// of the failing step, whose clean-up is fixed as well. Host thread.
int openSession(int index, FrameSize size);

} // namespace doccam
