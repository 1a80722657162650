// The size of the frames that a session asks for.
#pragma once

#include "base/frame_size.h"

namespace doccam {

namespace record {

struct Session;

} // namespace record

// Sets the size and the bytes of such a frame with three a pixel. A nonsense size wraps around.
void setGrabSize(record::Session& session, FrameSize size);

} // namespace doccam
