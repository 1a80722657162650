// Ending the streaming thread, as closing a session, opening the next and unloading all need it.
#pragma once

#include "capture/streaming_thread.h"

namespace doccam {

enum class ThreadEnd { kEnded, kGivenUp };

// Ends the streaming thread, if there is one. A thread that is stuck in a callback is given up; the
// images and the preview buffer that the callback may still read then stay in memory until it
// returns, whatever becomes of the library's own references.
ThreadEnd retireStreamingThread();

} // namespace doccam
