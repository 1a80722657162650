#include "vm/camera/descriptors.h"

#include "vm/camera/unit_controls.h"

#include <algorithm>
#include <array>

namespace doccam::vm {
namespace {

using virtualcam::CameraDescription;
using virtualcam::ControlDescription;
using virtualcam::FormatDescription;

constexpr std::uint8_t kVideoClass = 0x0e;
constexpr std::uint8_t kClassInterface = 0x24;
constexpr std::uint8_t kInterface = 0x04;
constexpr std::uint8_t kEndpoint = 0x05;

void append(Bytes& out, const Bytes& more) {
    out.insert(out.end(), more.begin(), more.end());
}

// Fills in the total length that the descriptor at the start of all has left open.
void setTotal(Bytes& all, std::size_t offset) {
    all[offset] = static_cast<std::uint8_t>(all.size());
    all[offset + 1] = static_cast<std::uint8_t>(all.size() >> 8);
}

std::uint32_t controlMap(const CameraDescription& camera, std::uint8_t unit) {
    std::uint32_t map = 0;
    for (const UnitControl& control : unitControls()) {
        const bool offered = std::ranges::any_of(
            camera.controls, [&](const ControlDescription& one) { return one.id == control.id; });
        if (control.unit == unit && offered) {
            map |= 1U << control.bit;
        }
    }
    return map;
}

Bytes controlUnits(const CameraDescription& camera) {
    Bytes units{13,   kClassInterface,
                0x01, 0x00,
                0x01, 0,
                0, // video class 1.00
                0x80, 0x8d,
                0x5b, 0x00,
                1,    kStreamingInterface};
    append(units,
           {18, kClassInterface, 0x02, kCameraTerminal, 0x01, 0x02, 0, 0, 0, 0, 0, 0, 0, 0, 3});
    appendLittle(units, controlMap(camera, kCameraTerminal), 3);
    append(units, {11, kClassInterface, 0x05, kProcessingUnit, kCameraTerminal, 0, 0, 2});
    appendLittle(units, controlMap(camera, kProcessingUnit), 2);
    append(units, {0});
    append(units, {9, kClassInterface, 0x03, kOutputTerminal, 0x01, 0x01, 0, kProcessingUnit, 0});
    setTotal(units, 5);
    return units;
}

Bytes controlInterface(const CameraDescription& camera) {
    Bytes out{9, kInterface, 0, 0, 1, kVideoClass, 0x01, 0, kProductString};
    append(out, controlUnits(camera));
    append(out, {7, kEndpoint, 0x80 | kStatusEndpoint, 0x03, 16, 0, 8});
    append(out, {5, 0x25, 0x03, 16, 0});
    return out;
}

Bytes frameDescriptor(std::uint8_t subtype, std::uint8_t number, virtualcam::Size size,
                      const std::vector<int>& rates) {
    const auto bytes = static_cast<std::uint32_t>(size.width * size.height * 2);
    Bytes out{static_cast<std::uint8_t>(26 + 4 * rates.size()), kClassInterface, subtype, number,
              0};
    appendLittle(out, static_cast<std::uint32_t>(size.width), 2);
    appendLittle(out, static_cast<std::uint32_t>(size.height), 2);
    appendLittle(out, bytes * 8 * static_cast<std::uint32_t>(rates.back()), 4);
    appendLittle(out, bytes * 8 * static_cast<std::uint32_t>(rates.front()), 4);
    appendLittle(out, bytes, 4);
    appendLittle(out, intervalOf(rates.front()), 4);
    out.push_back(static_cast<std::uint8_t>(rates.size()));
    for (const int rate : rates) {
        appendLittle(out, intervalOf(rate), 4);
    }
    return out;
}

Bytes formatDescriptors(const FormatDescription& format, std::uint8_t number) {
    const auto sizes = static_cast<std::uint8_t>(format.sizes.size());
    const bool mjpeg = format.pixelFormat == virtualcam::kMjpeg;
    Bytes out;
    if (mjpeg) {
        out = {11, kClassInterface, 0x06, number, sizes, 1, 1, 0, 0, 0, 0};
    } else {
        out = {27, kClassInterface, 0x04, number, sizes};
        append(out, {'Y', 'U', 'Y', '2', 0, 0, 0x10, 0, 0x80, 0, 0, 0xaa, 0, 0x38, 0x9b, 0x71});
        append(out, {16, 1, 0, 0, 0, 0});
    }
    std::uint8_t frame = 0;
    for (const virtualcam::Size& size : format.sizes) {
        append(out, frameDescriptor(mjpeg ? 0x07 : 0x05, ++frame, size, format.frameRates));
    }
    append(out, {6, kClassInterface, 0x0d, 1, 1, 4}); // BT.601 colours
    return out;
}

Bytes streamingFormats(const CameraDescription& camera) {
    const auto count = static_cast<std::uint8_t>(camera.formats.size());
    Bytes out{static_cast<std::uint8_t>(13 + count),
              kClassInterface,
              0x01,
              count,
              0,
              0,
              0x80 | kVideoEndpoint,
              0,
              kOutputTerminal,
              0,
              0,
              0,
              1};
    out.resize(out.size() + count);
    std::uint8_t number = 0;
    for (const FormatDescription& format : camera.formats) {
        append(out, formatDescriptors(format, ++number));
    }
    setTotal(out, 4);
    return out;
}

// The alternate setting without bandwidth, then those with increasing bandwidth.
Bytes streamingInterface(const CameraDescription& camera) {
    Bytes out{9, kInterface, kStreamingInterface, 0, 0, kVideoClass, 0x02, 0, 0};
    append(out, streamingFormats(camera));
    std::uint8_t setting = 0;
    for (const std::uint32_t packet : {0x0200U, 0x0400U, 0x0c00U, 0x1400U}) {
        append(out, {9, kInterface, kStreamingInterface, ++setting, 1, kVideoClass, 0x02, 0, 0});
        append(out, {7, kEndpoint, 0x80 | kVideoEndpoint, 0x05});
        appendLittle(out, packet, 2);
        out.push_back(1);
    }
    return out;
}

} // namespace

Bytes deviceDescriptor(const CameraDescription& camera) {
    Bytes out{18, 0x01, 0x00, 0x02, 0xef, 0x02, 0x01, 64};
    appendLittle(out, static_cast<std::uint32_t>(std::stoul(camera.vendor, nullptr, 16)), 2);
    appendLittle(out, static_cast<std::uint32_t>(std::stoul(camera.product, nullptr, 16)), 2);
    append(out, {0x00, 0x01, 1, kProductString, 0, 1});
    return out;
}

Bytes configurationDescriptor(const CameraDescription& camera) {
    Bytes out{9, 0x02, 0, 0, 2, 1, 0, 0x80, 250};
    append(out, {8, 0x0b, 0, 2, kVideoClass, 0x03, 0, kProductString});
    append(out, controlInterface(camera));
    append(out, streamingInterface(camera));
    setTotal(out, 2);
    return out;
}

Bytes stringDescriptor(const CameraDescription& camera, int number) {
    if (number == 0) {
        return {4, 0x03, 0x09, 0x04};
    }
    if (number > kProductString) {
        return {};
    }
    const std::string text = number == kProductString ? camera.card : "doccam";
    Bytes out{static_cast<std::uint8_t>(2 + 2 * text.size()), 0x03};
    for (const char letter : text) {
        appendLittle(out, static_cast<std::uint8_t>(letter), 2);
    }
    return out;
}

} // namespace doccam::vm
