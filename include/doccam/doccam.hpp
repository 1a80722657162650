// doccam's functions with C++ linkage: the building blocks of the C interface, for hosts that use
// cv::Mat. Names and signatures are fixed.
#pragma once

#include "codes.hpp"
#include "decoding.hpp"
#include "doccam.h"
#include "documents.hpp"
#include "preview.hpp"

#include <string>
#include <vector>

// --- Settings and helpers ------------------------------------------------------------------------

// Registers the callback for preview pictures, like SetDataCallback. Any thread. Returns 0.
DOCCAM_API int SetWebDataCallback(WebFrameCallback callback);

// Sets the grab size in pixels, and thereby the size of a frame, width x height x 3 bytes.
DOCCAM_API void setGrabSize(int width, int height);

// Waits ms milliseconds, 0 to 999. A signal may end the wait early.
DOCCAM_API void Sleep(int ms);

// Splits text at each occurrence of pattern. Empty pieces are kept: "a:" gives "a" and "". An empty
// pattern leaves the text whole.
DOCCAM_API std::vector<std::string> split(std::string text, std::string pattern);

// --- Streaming -----------------------------------------------------------------------------------

// Copies one frame of the open camera to buffer, which must hold width x height x 3 bytes of the
// grab size, and stores the number of bytes copied in *length. Blocks until the driver has a frame.
// 0 success; -1 the driver failed; -100 the driver returned a buffer that does not exist.
DOCCAM_API int grabImage(unsigned char* buffer, int* length);

// The streaming thread's entry point: runs the frame loop until the session ends. arg is unused.
DOCCAM_API void* VideoStreamPro(void* arg);
