#include "camera/cameras.h"

#include "host/failure.h"
#include "host/texts.h"

#include <doccam/doccam.h>

#include <algorithm>

namespace doccam::host {
namespace {

std::string orEmpty(const char* text) {
    return text != nullptr ? text : "";
}

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

// The sizes of one format.
struct Offer {
    Format format = Format::kMjpeg;
    std::vector<Size> sizes;
};

std::vector<Offer> offersOf(int index, std::optional<Format> format) {
    std::vector<Offer> offers;
    for (const Format candidate : {Format::kMjpeg, Format::kYuyv}) {
        if (format && *format != candidate) {
            continue;
        }
        Offer offer{candidate, offeredSizes(index, candidate)};
        if (!offer.sizes.empty()) {
            offers.push_back(std::move(offer));
        }
    }
    return offers;
}

std::string sizesIn(const Offer& offer) {
    return listed(offer.sizes, textOf) + " in " + nameOf(offer.format);
}

Capture largestOf(const std::vector<Offer>& offers) {
    std::optional<Capture> largest;
    for (const Offer& offer : offers) {
        const Size size = *std::max_element(offer.sizes.begin(), offer.sizes.end(), smaller);
        if (!largest || smaller(largest->size, size)) {
            largest = Capture{offer.format, size};
        }
    }
    return *largest;
}

Capture choose(int index, const std::vector<Offer>& offers, Size size) {
    const Size needed = size == kEnlargedSize ? kFullSize : size;
    for (const Offer& offer : offers) {
        if (std::find(offer.sizes.begin(), offer.sizes.end(), needed) != offer.sizes.end()) {
            return {offer.format, size};
        }
    }
    throw Failure(kUsage, "Camera " + std::to_string(index) + " has no size " + textOf(size) +
                              "; choose one of " + listed(offers, sizesIn) + ".");
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

std::string titleOf(const Camera& camera) {
    return std::to_string(camera.index) + (camera.name.empty() ? "" : " " + camera.name) + " (" +
           camera.node + ", " + camera.usbId + ")";
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
        cameras.push_back({index, trimmed(orEmpty(name)), orEmpty(doccam_camera_node(index)),
                           orEmpty(doccam_camera_usb_id(index))});
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
                                     "; choose one of " + listed(attachedCameras(), titleOf) + ".");
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
    const std::vector<Offer> offers = offersOf(index, format);
    if (offers.empty()) {
        failWithoutSizes(index, format);
    }
    const Capture capture = size ? choose(index, offers, *size) : largestOf(offers);
    SetVideoFormat(static_cast<int>(capture.format));
    return capture;
}

} // namespace doccam::host
