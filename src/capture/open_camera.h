// Opening a session: the list of steps, their lines and result codes.
#pragma once

#include "base/frame_size.h"
#include "state/parts.h"

namespace doccam {

// Opens the camera at index for frames of size and starts the streaming thread. Returns 0 or the
// fixed code of the failing step. Host thread.
int openSession(LibraryState& library, int index, FrameSize size);

// Lists and prints the frame sizes of the camera at index, which ends an open session. Returns how
// many the set format has, 0 on any failure. Host thread.
int countSizes(LibraryState& library, int index);

} // namespace doccam
