#include "capture/format_negotiation.h"

#include "capture/request_failure.h"
#include "state/session.h"
#include "state/settings.h"

#include <sys/ioctl.h>

namespace doccam {
namespace {

// More formats than any driver lists; ends the loop over a driver that never stops.
constexpr unsigned kMaximumFormats = 4096;

void printDriver(int descriptor) {
    v4l2_capability capability{};
    ioctl(descriptor, VIDIOC_QUERYCAP, &capability);
    // Drivers may fill these fields to the last byte.
    const auto text = [](auto& field) {
        field[sizeof field - 1] = 0;
        return reinterpret_cast<const char*>(field);
    };
    std::printf("Driver Name:%s Card Name:%s Bus info:%s Driver Version:%u.%u.%u",
                text(capability.driver), text(capability.card), text(capability.bus_info),
                (capability.version >> 16) & 0xFFU, (capability.version >> 8) & 0xFFU,
                capability.version & 0xFFU);
}

// One more than there are formats: hosts expect the failing index, with the last description.
void printFormats(int descriptor) {
    std::puts("Support format:");
    v4l2_fmtdesc format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    int failed = 0;
    for (format.index = 0; failed == 0 && format.index < kMaximumFormats; ++format.index) {
        failed = ioctl(descriptor, VIDIOC_ENUM_FMT, &format);
        format.description[sizeof format.description - 1] = 0;
        std::printf("index %d, format %s", static_cast<int>(format.index),
                    reinterpret_cast<const char*>(format.description));
    }
}

void printFrameRate(int descriptor) {
    v4l2_streamparm parameters{};
    parameters.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    ioctl(descriptor, VIDIOC_G_PARM, &parameters);
    const v4l2_fract& interval = parameters.parm.capture.timeperframe;
    std::printf("befor:framerate: numerator = %d,denominator = %d",
                static_cast<int>(interval.numerator), static_cast<int>(interval.denominator));
}

v4l2_format wantedFormat(const record::Session& session, const record::Settings& settings) {
    v4l2_format format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    format.fmt.pix.pixelformat =
        settings.CameraFormat == 0 ? V4L2_PIX_FMT_MJPEG : V4L2_PIX_FMT_YUYV;
    format.fmt.pix.width = static_cast<std::uint32_t>(session.nWidth.load());
    format.fmt.pix.height = static_cast<std::uint32_t>(session.nHeight.load());
    return format;
}

void recordFormat(record::Session& session, const v4l2_format& format) {
    const v4l2_pix_format& picture = format.fmt.pix;
    std::printf("fmt.type:\t\t%d", static_cast<int>(format.type));
    const auto letter = [&](int i) { return static_cast<char>(picture.pixelformat >> (8 * i)); };
    std::snprintf(session.pix_format, sizeof session.pix_format, "%c%c%c%c", letter(0), letter(1),
                  letter(2), letter(3));
    std::printf("pix.pixelformat:\t%s", session.pix_format);
    std::printf("pix.width:\t\t%d", static_cast<int>(picture.width));
    std::printf("pix.height:\t\t%d", static_cast<int>(picture.height));
    std::printf("pix.field:\t\t%d", static_cast<int>(picture.field));
}

} // namespace

void printCamera(int descriptor) {
    printDriver(descriptor);
    printFormats(descriptor);
    printFrameRate(descriptor);
}

int negotiateFormat(record::Session& session, const record::Settings& settings) {
    const int descriptor = session.cam_fd.get();
    v4l2_format format = wantedFormat(session, settings);
    if (ioctl(descriptor, VIDIOC_TRY_FMT, &format) != 0) {
        return requestFailed("ioctl(VIDIOC_TRY_FMT)", -5);
    }
    if (ioctl(descriptor, VIDIOC_S_FMT, &format) != 0) {
        return requestFailed("ioctl(VIDIOC_S_FMT)", -6);
    }
    if (ioctl(descriptor, VIDIOC_G_FMT, &format) == -1) {
        std::puts("set format failed!");
        return -7;
    }
    recordFormat(session, format);
    return 0;
}

} // namespace doccam
