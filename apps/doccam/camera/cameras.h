// The cameras that are attached, and what each of them offers.
#pragma once

#include "camera/picture_format.h"

#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

struct Camera {
    int index = 0;
    std::string name; // empty when its node cannot be opened
};

struct Capture {
    Format format = Format::kMjpeg;
    Size size;
};

// While no session is open; one host thread.

// Throws Failure when there is no device manager; the list may be empty.
std::vector<Camera> attachedCameras();

// Throws Failure unless camera index is attached.
void requireCamera(int index);

// The sizes that camera index offers in format, in the driver's order.
std::vector<Size> offeredSizes(int index, Format format);

// What to open camera index with: the wanted format and size, each where it is offered; else MJPEG,
// or YUYV if there is no MJPEG, at its largest size. Leaves the format chosen. Throws Failure that
// names what is offered when a wanted one is not.
Capture chooseCapture(int index, std::optional<Format> format, std::optional<Size> size);

} // namespace doccam::host
