#include "camera/cameras.h"

#include "host/failure.h"
#include "host/texts.h"

#include <doccam/doccam.h>

#include <algorithm>

namespace doccam::host {
namespace {

// The driver's texts may start with blanks.
std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first);
}

// The enlarged size, which only stills have, is never the default.
bool smaller(Size a, Size b) {
    const auto weight = [](Size size) { return size == kEnlargedSize ? 0 : size.area(); };
    return weight(a) < weight(b);
}

Size choose(int index, Format format, const std::vector<Size>& offered, std::optional<Size> size) {
    if (!size) {
        return *std::max_element(offered.begin(), offered.end(), smaller);
    }
    const Size needed = *size == kEnlargedSize ? kFullSize : *size;
    if (std::find(offered.begin(), offered.end(), needed) == offered.end()) {
        throw Failure(kUsage, "Camera " + std::to_string(index) + " has no size " + textOf(*size) +
                                  " in " + nameOf(format) + "; choose one of " +
                                  listed(offered, textOf) + ".");
    }
    return *size;
}

constexpr int kLargestSide = 99999;

std::optional<int> parseSide(std::string_view text) {
    const auto side = parseNumber<int>(text);
    return side && *side >= 1 && *side <= kLargestSide ? side : std::nullopt;
}

} // namespace

std::string nameOf(Format format) {
    return format == Format::kMjpeg ? "mjpeg" : "yuyv";
}

std::string textOf(Size size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

std::optional<Size> parseSize(const std::string& text) {
    const auto cross = text.find('x');
    if (cross == std::string::npos) {
        return std::nullopt;
    }
    const std::string_view whole = text;
    const auto width = parseSide(whole.substr(0, cross));
    const auto height = parseSide(whole.substr(cross + 1));
    return width && height ? std::optional(Size{*width, *height}) : std::nullopt;
}

void failWithoutCamera() {
    throw Failure(kNoCamera, "No supported document camera is attached; plug one in, or run "
                             "doccam doctor.");
}

void failWithoutSizes(int index, std::optional<Format> format) {
    throw Failure(kCameraFailed, "Camera " + std::to_string(index) + " offers no frame size" +
                                     (format ? " in " + nameOf(*format) : std::string()) +
                                     "; doccam doctor says why.");
}

std::vector<Camera> attachedCameras() {
    const int count = getDeviceCount();
    if (count == DOCCAM_DEVICES_NO_UDEV) {
        throw Failure(kNoCamera, "The device manager (udev) does not answer; start it, or run "
                                 "doccam --virtual.");
    }
    std::vector<Camera> cameras;
    for (int index = 0; index < count; ++index) {
        const char* name = getCameraName(index);
        cameras.push_back({index, name != nullptr ? trimmed(name) : ""});
    }
    return cameras;
}

void requireCamera(int index) {
    const int count = getDeviceCount();
    if (count < 1) {
        failWithoutCamera();
    }
    if (index < 0 || index >= count) {
        throw Failure(kNoCamera, "There is no camera " + std::to_string(index) +
                                     "; doccam list shows which there are.");
    }
}

std::vector<Size> offeredSizes(int index, Format format) {
    SetVideoFormat(static_cast<int>(format));
    std::vector<Size> sizes;
    const int count = getCameraResolutionCount(index);
    for (int i = 0; i < count; ++i) {
        Size size;
        if (getCameraResolution(i, &size.width, &size.height) == DOCCAM_OK) {
            sizes.push_back(size);
        }
    }
    return sizes;
}

Capture chooseCapture(int index, std::optional<Format> format, std::optional<Size> size) {
    requireCamera(index);
    for (const Format candidate : {Format::kMjpeg, Format::kYuyv}) {
        if (format && *format != candidate) {
            continue;
        }
        const std::vector<Size> offered = offeredSizes(index, candidate);
        if (!offered.empty()) {
            return {candidate, choose(index, candidate, offered, size)};
        }
    }
    failWithoutSizes(index, format);
}

} // namespace doccam::host
