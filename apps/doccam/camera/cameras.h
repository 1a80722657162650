// The attached cameras, and the pixel formats and frame sizes that they offer.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

enum class Format { kMjpeg = 0, kYuyv = 1 }; // the values that SetVideoFormat takes

struct Size {
    int width = 0;
    int height = 0;

    bool operator==(const Size&) const = default;
};

inline long long area(Size size) {
    return static_cast<long long>(size.width) * size.height;
}

// "mjpeg" and "yuyv".
std::string nameOf(Format format);

// "1280x960".
std::string textOf(Size size);

// Parses WIDTHxHEIGHT, both 1 to 99999; none for any other text.
std::optional<Size> parseSize(const std::string& text);

struct Camera {
    int index = 0;
    std::string name; // empty if its node cannot be opened
};

struct Capture {
    Format format = Format::kMjpeg;
    Size size;
};

// Call these while no session is open, on one host thread.

// Throws Failure if udev cannot be used; the list may be empty.
std::vector<Camera> attachedCameras();

// Throws Failure unless camera index is attached.
void requireCamera(int index);

// The sizes that camera index offers in format, in the driver's order.
std::vector<Size> offeredSizes(int index, Format format);

// The format and size to open camera index with: the requested ones, by default MJPEG, or YUYV if
// there is no MJPEG, at its largest size. Selects the format in the library. Throws Failure naming
// the offered ones if a requested one is not among them.
Capture chooseCapture(int index, std::optional<Format> format, std::optional<Size> size);

} // namespace doccam::host
