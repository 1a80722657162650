// The life of the camera session: its frame size, the start and end of its thread, its close.
#pragma once

#include "base/frame_size.h"
#include "state/parts.h"

namespace doccam {

// Sets the requested frame size, and a frame's bytes, which wrap around for a nonsense size.
void setGrabSize(record::Session& session, FrameSize size);

// Starts the streaming thread. When none can be created, prints a line, and no frame will come.
void startStreaming(record::Session& session);

// Streams on the calling thread, the host's own, until the session ends.
void streamOnThisThread(const record::Session& session);

// Closes the session, in a fixed order with fixed waits, also without one, and prints what it
// releases. One caller does the work; another waits for it, but a callback returns. A thread stuck
// in a callback or in the writing of a file is given up. Any thread.
void closeSession(LibraryState& library);

// Releases the node that a session or a failed open holds: closes the session or, without one, the
// descriptor alone, and prints which in the caller's name. False when no node is open.
bool releaseNode(LibraryState& library, const char* caller);

// Silently ends the thread and mappings of a session whose node is gone or that was never complete,
// which would keep the camera busy. Its frames stay unless a stuck callback still has them.
void endLostSession(LibraryState& library);

} // namespace doccam
