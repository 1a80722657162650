// The frames that the library hands to its host, and the end of its stream.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam::vm {

// Registers the callbacks for frames and faults; once in a process is enough.
void watchFrames();

// Forgets that an earlier stream has ended; before a new one begins.
void expectStream();

// Waits for a frame that comes after this call and returns a copy, red first; empty when the stream
// ends instead.
cv::Mat nextFrame();

// Waits until the stream has ended of itself and returns the reason.
std::string endOfStream();

} // namespace doccam::vm
