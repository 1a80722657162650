// The size of the frames that a session asks for.
#pragma once

#include "base/frame_size.h"

namespace doccam {

struct LibraryState;

// Sets the size and the bytes of such a frame with three a pixel. A nonsense size wraps around.
void setGrabSize(LibraryState& library, FrameSize size);

} // namespace doccam
