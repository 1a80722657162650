#include "device/identity.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace doccam::virtualcam {

namespace {

template <std::size_t Length>
void copyText(__u8 (&target)[Length], const std::string& text) {
    std::memcpy(target, text.data(), std::min(text.size(), Length - 1));
}

// capabilities covers both nodes of the camera, device_caps only the queried one.
void queryCapability(const Identity& identity, bool metadata, v4l2_capability& record) {
    constexpr std::uint32_t kShared = V4L2_CAP_STREAMING | V4L2_CAP_EXT_PIX_FORMAT;
    record = {};
    copyText(record.driver, "uvcvideo");
    copyText(record.card, identity.card);
    copyText(record.bus_info, identity.busInfo);
    record.version = 6 << 16 | 1 << 8 | 170;
    record.device_caps = kShared | (metadata ? V4L2_CAP_META_CAPTURE : V4L2_CAP_VIDEO_CAPTURE);
    record.capabilities =
        kShared | V4L2_CAP_META_CAPTURE | V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_DEVICE_CAPS;
}

int enumerateInput(v4l2_input& record) {
    if (record.index != 0) {
        return EINVAL;
    }
    record = {};
    copyText(record.name, "Camera 1");
    record.type = V4L2_INPUT_TYPE_CAMERA;
    return 0;
}

std::optional<int> answerInput(std::uint32_t request, void* argument) {
    switch (request) {
    case VIDIOC_ENUMINPUT:
        return enumerateInput(*static_cast<v4l2_input*>(argument));
    case VIDIOC_G_INPUT:
        *static_cast<int*>(argument) = 0;
        return 0;
    case VIDIOC_S_INPUT:
        return *static_cast<int*>(argument) == 0 ? 0 : EINVAL;
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<int> answerIdentity(const Identity& identity, bool metadata, std::uint32_t request,
                                  void* argument) {
    switch (request) {
    case VIDIOC_QUERYCAP:
        queryCapability(identity, metadata, *static_cast<v4l2_capability*>(argument));
        return 0;
    case VIDIOC_G_PRIORITY:
        *static_cast<std::uint32_t*>(argument) = V4L2_PRIORITY_INTERACTIVE;
        return 0;
    case VIDIOC_S_PRIORITY:
        return 0;
    default:
        return metadata ? std::nullopt : answerInput(request, argument);
    }
}

} // namespace doccam::virtualcam
