#include "device/metadata_device.h"

#include <cerrno>
#include <cstring>

namespace doccam::virtualcam {

namespace {

constexpr std::uint32_t kBlockBytes = 1024;

int describeFormat(v4l2_fmtdesc& entry) {
    if (entry.type != V4L2_BUF_TYPE_META_CAPTURE || entry.index != 0) {
        return EINVAL;
    }
    entry = {};
    entry.type = V4L2_BUF_TYPE_META_CAPTURE;
    entry.pixelformat = V4L2_META_FMT_UVC;
    std::strncpy(reinterpret_cast<char*>(entry.description), "UVC Payload Header Metadata",
                 sizeof entry.description - 1);
    return 0;
}

int negotiate(v4l2_format& format) {
    if (format.type != V4L2_BUF_TYPE_META_CAPTURE) {
        return EINVAL;
    }
    format.fmt.meta = {V4L2_META_FMT_UVC, kBlockBytes};
    return 0;
}

} // namespace

int answerMetadataNode(const Identity& identity, std::uint32_t request, void* argument) {
    if (const auto answer = answerIdentity(identity, true, request, argument)) {
        return *answer;
    }
    switch (request) {
    case VIDIOC_ENUM_FMT:
        return describeFormat(*static_cast<v4l2_fmtdesc*>(argument));
    case VIDIOC_G_FMT:
    case VIDIOC_TRY_FMT:
    case VIDIOC_S_FMT:
        return negotiate(*static_cast<v4l2_format*>(argument));
    case VIDIOC_REQBUFS:
    case VIDIOC_QUERYBUF:
    case VIDIOC_QBUF:
    case VIDIOC_DQBUF:
    case VIDIOC_STREAMON:
    case VIDIOC_STREAMOFF:
        return EINVAL;
    default:
        return ENOTTY;
    }
}

} // namespace doccam::virtualcam
