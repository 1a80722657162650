// The attached cameras, and the pixel formats and frame sizes that they offer.
#pragma once

#include "base/frame_size.h"

#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

enum class Format { kMjpeg = 0, kYuyv = 1 }; // the values that SetVideoFormat takes

using Size = FrameSize;

// "mjpeg" and "yuyv".
std::string nameOf(Format format);

// "1280x960".
std::string textOf(Size size);

// Parses WIDTHxHEIGHT, both 1 to 99999; none for any other text.
std::optional<Size> parseSize(const std::string& text);

struct Camera {
    int index = 0;
    std::string name;  // empty if its node cannot be opened
    std::string node;  // "/dev/video0"
    std::string usbId; // "0c45:6366"
};

// "0 Doc Cam (/dev/video0, 0c45:6366)".
std::string titleOf(const Camera& camera);

struct Capture {
    Format format = Format::kMjpeg;
    Size size;
};

// Throw the Failure that no camera is attached, or that camera index has no size, in format if
// given.
[[noreturn]] void failWithoutCamera();
[[noreturn]] void failWithoutSizes(int index, std::optional<Format> format = std::nullopt);

// Call these while no session is open, on one host thread.

// Throws Failure if udev cannot be used; the list may be empty.
std::vector<Camera> attachedCameras();

// Throws Failure unless camera index is attached.
void requireCamera(int index);

// The sizes that camera index offers in format, in the driver's order.
std::vector<Size> offeredSizes(int index, Format format);

// The requested format and size. By default the largest size that any format offers, in MJPEG if
// that offers it. Selects the format in the library. Throws Failure naming the offered ones if the
// camera lacks them.
Capture chooseCapture(int index, std::optional<Format> format, std::optional<Size> size);

} // namespace doccam::host
