// The capture node's answers about formats and frame rates.
#include "device/capture_device.h"

#include <algorithm>
#include <cerrno>

namespace doccam::virtualcam {

std::optional<int> CaptureDevice::answerFormat(ClientId client, std::uint32_t request,
                                               void* argument) {
    switch (request) {
    case VIDIOC_ENUM_FMT:
        return offer_.describeFormat(*static_cast<v4l2_fmtdesc*>(argument));
    case VIDIOC_ENUM_FRAMESIZES:
        return offer_.describeSize(*static_cast<v4l2_frmsizeenum*>(argument));
    case VIDIOC_ENUM_FRAMEINTERVALS:
        return offer_.describeInterval(*static_cast<v4l2_frmivalenum*>(argument));
    case VIDIOC_G_FMT:
        return getFormat(*static_cast<v4l2_format*>(argument));
    case VIDIOC_TRY_FMT:
        return tryFormat(*static_cast<v4l2_format*>(argument));
    case VIDIOC_S_FMT:
        return setFormat(client, *static_cast<v4l2_format*>(argument));
    case VIDIOC_G_PARM:
        return getParameters(*static_cast<v4l2_streamparm*>(argument));
    case VIDIOC_S_PARM:
        return setParameters(client, *static_cast<v4l2_streamparm*>(argument));
    default:
        return std::nullopt;
    }
}

PictureFormat CaptureDevice::nearest(std::uint32_t pixelFormat, Size size) const {
    PictureFormat format = offer_.nearest(pixelFormat, size);
    format.bufferBytes = faults_.bufferBytes(format.bufferBytes);
    return format;
}

// The first handle that sets a format or requests buffers owns the stream until it frees them or
// closes.
int CaptureDevice::acquire(ClientId client) {
    if (owner_ != 0 && owner_ != client) {
        return EBUSY;
    }
    owner_ = client;
    return 0;
}

int CaptureDevice::getFormat(v4l2_format& format) const {
    if (format.type != V4L2_BUF_TYPE_VIDEO_CAPTURE) {
        return EINVAL;
    }
    format.fmt.pix = toPixFormat(format_);
    return 0;
}

int CaptureDevice::tryFormat(v4l2_format& format) const {
    if (format.type != V4L2_BUF_TYPE_VIDEO_CAPTURE) {
        return EINVAL;
    }
    const v4l2_pix_format& wanted = format.fmt.pix;
    constexpr std::uint32_t kLargest = 1 << 20;
    const Size size{static_cast<int>(std::min(wanted.width, kLargest)),
                    static_cast<int>(std::min(wanted.height, kLargest))};
    format.fmt.pix = toPixFormat(nearest(wanted.pixelformat, size));
    return 0;
}

int CaptureDevice::setFormat(ClientId client, v4l2_format& format) {
    if (const int error = tryFormat(format); error != 0) {
        return error;
    }
    if (const int error = acquire(client); error != 0) {
        return error;
    }
    if (!buffers_.empty()) {
        return EBUSY;
    }
    const v4l2_pix_format& pix = format.fmt.pix;
    format_ = nearest(pix.pixelformat, {static_cast<int>(pix.width), static_cast<int>(pix.height)});
    frameRate_ = offer_.nearestRate(format_.pixelFormat, {0, 0});
    return 0;
}

int CaptureDevice::getParameters(v4l2_streamparm& parameters) const {
    if (parameters.type != V4L2_BUF_TYPE_VIDEO_CAPTURE) {
        return EINVAL;
    }
    parameters.parm.capture = {};
    parameters.parm.capture.capability = V4L2_CAP_TIMEPERFRAME;
    parameters.parm.capture.timeperframe = {1, static_cast<std::uint32_t>(frameRate_)};
    return 0;
}

int CaptureDevice::setParameters(ClientId client, v4l2_streamparm& parameters) {
    if (parameters.type != V4L2_BUF_TYPE_VIDEO_CAPTURE) {
        return EINVAL;
    }
    if (const int error = acquire(client); error != 0) {
        return error;
    }
    if (streaming_) {
        return EBUSY;
    }
    frameRate_ = offer_.nearestRate(format_.pixelFormat, parameters.parm.capture.timeperframe);
    return getParameters(parameters);
}

FrameClock::Interval CaptureDevice::interval() const {
    return intervalMs_ ? FrameClock::Interval(*intervalMs_ * 1000)
                       : FrameClock::Interval(1000000 / frameRate_);
}

} // namespace doccam::virtualcam
