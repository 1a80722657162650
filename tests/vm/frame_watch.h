// The frames that the library delivers to its host, and the end of its stream.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam::vm {

// Registers the callbacks for frames and faults. Once per process is enough.
void watchFrames();

// Forgets that an earlier stream has ended. Call before opening a new one.
void expectStream();

// Waits for the next frame and returns a copy, red first; empty if the stream ends instead.
cv::Mat nextFrame();

// Waits until the stream has ended by itself and returns the reason.
std::string endOfStream();

} // namespace doccam::vm
