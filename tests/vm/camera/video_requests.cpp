#include "vm/camera/video_requests.h"

#include "vm/camera/descriptors.h"
#include "vm/camera/unit_controls.h"

#include <algorithm>

namespace doccam::vm {

using virtualcam::CameraDescription;
using virtualcam::ControlDescription;
using virtualcam::FormatDescription;

namespace {

constexpr std::size_t kSettingsBytes = 26;
constexpr int kProbe = 1;
constexpr int kCommit = 2;

enum Get : std::uint8_t {
    kGetCurrent = 0x81,
    kGetMinimum = 0x82,
    kGetMaximum = 0x83,
    kGetResolution = 0x84,
    kGetInfo = 0x86,
    kGetDefault = 0x87,
};

constexpr std::uint8_t kReadableAndWritable = 0x03;

int selectorOf(const Setup& setup) {
    return setup.value >> 8;
}

bool toStreaming(const Setup& setup) {
    return (setup.index & 0xffU) == kStreamingInterface;
}

int signedValue(ByteView data, int bytes) {
    const std::uint32_t value = little(data, 0, static_cast<std::size_t>(bytes));
    return bytes == 2 ? static_cast<std::int16_t>(value) : static_cast<int>(value);
}

} // namespace

struct VideoRequests::Found {
    const UnitControl& place;
    const ControlDescription& control;
};

VideoRequests::VideoRequests(const CameraDescription& camera)
  : camera_(camera)
  , probed_(offered({}))
  , committed_(probed_) {
    for (const ControlDescription& control : camera_.controls) {
        values_[control.id] = control.defaultValue;
    }
}

std::optional<Bytes> VideoRequests::get(const Setup& setup) const {
    if (!toStreaming(setup)) {
        return getControl(setup);
    }
    if (setup.request == kGetInfo) {
        return Bytes{kReadableAndWritable};
    }
    switch (selectorOf(setup)) {
    case kProbe:
        return encode(setup.request == kGetDefault ? offered({}) : probed_);
    case kCommit:
        return encode(committed_);
    default:
        return std::nullopt;
    }
}

bool VideoRequests::set(const Setup& setup, ByteView data) {
    if (!toStreaming(setup)) {
        return setControl(setup, data);
    }
    const int selector = selectorOf(setup);
    if (data.size() < kSettingsBytes || (selector != kProbe && selector != kCommit)) {
        return false;
    }
    (selector == kProbe ? probed_ : committed_) = offered({data[2], data[3], little(data, 4, 4)});
    return true;
}

std::uint32_t VideoRequests::pixelFormat() const {
    return camera_.formats[committed_.format - 1U].pixelFormat;
}

virtualcam::Size VideoRequests::size() const {
    return camera_.formats[committed_.format - 1U].sizes[committed_.frame - 1U];
}

std::chrono::nanoseconds VideoRequests::interval() const {
    return std::chrono::nanoseconds{100} * committed_.interval;
}

int VideoRequests::control(std::uint32_t id) const {
    const std::lock_guard lock(mutex_);
    return values_.at(id);
}

std::optional<VideoRequests::Found> VideoRequests::find(const Setup& setup) const {
    for (const UnitControl& place : unitControls()) {
        if (place.unit != setup.index >> 8 || place.selector != selectorOf(setup)) {
            continue;
        }
        const auto control = std::ranges::find(camera_.controls, place.id, &ControlDescription::id);
        if (control != camera_.controls.end()) {
            return Found{place, *control};
        }
    }
    return std::nullopt;
}

std::optional<Bytes> VideoRequests::getControl(const Setup& setup) const {
    const auto found = find(setup);
    if (!found) {
        return std::nullopt;
    }
    int value = 0;
    switch (setup.request) {
    case kGetCurrent:
        value = control(found->control.id);
        break;
    case kGetMinimum:
        value = found->control.minimum;
        break;
    case kGetMaximum:
        value = found->control.maximum;
        break;
    case kGetResolution:
        value = found->control.step;
        break;
    case kGetDefault:
        value = found->control.defaultValue;
        break;
    case kGetInfo:
        return Bytes{kReadableAndWritable};
    default:
        return std::nullopt;
    }
    Bytes out;
    appendLittle(out, static_cast<std::uint32_t>(value), found->place.bytes);
    return out;
}

bool VideoRequests::setControl(const Setup& setup, ByteView data) {
    const auto found = find(setup);
    if (!found || data.size() < static_cast<std::size_t>(found->place.bytes)) {
        return false;
    }
    const std::lock_guard lock(mutex_);
    values_[found->control.id] = signedValue(data, found->place.bytes);
    return true;
}

// The nearest supported settings: an unknown number becomes the first of its list.
StreamSettings VideoRequests::offered(StreamSettings wanted) const {
    if (wanted.format < 1 || wanted.format > camera_.formats.size()) {
        wanted.format = 1;
    }
    const FormatDescription& format = camera_.formats[wanted.format - 1U];
    if (wanted.frame < 1 || wanted.frame > format.sizes.size()) {
        wanted.frame = 1;
    }
    const bool known = std::ranges::any_of(
        format.frameRates, [&](int rate) { return intervalOf(rate) == wanted.interval; });
    if (!known) {
        wanted.interval = intervalOf(format.frameRates.front());
    }
    return wanted;
}

Bytes VideoRequests::encode(const StreamSettings& settings) const {
    const virtualcam::Size size = camera_.formats[settings.format - 1U].sizes[settings.frame - 1U];
    Bytes out{1, 0, settings.format, settings.frame};
    appendLittle(out, settings.interval, 4);
    out.resize(18); // key frames, quality, window and delay: not used
    appendLittle(out, static_cast<std::uint32_t>(size.width * size.height * 2), 4);
    appendLittle(out, kLargestPayload, 4);
    return out;
}

} // namespace doccam::vm
