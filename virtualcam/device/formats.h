// Which pictures a camera offers, and how its driver adjusts what it is asked for.
#pragma once

#include "description.h"

#include <linux/videodev2.h>

#include <cstdint>
#include <vector>

namespace doccam::virtualcam {

struct PictureFormat {
    std::uint32_t pixelFormat = 0;
    Size size;
    std::uint32_t bytesPerLine = 0; // 0 for compressed pictures
    std::uint32_t bufferBytes = 0;
};

// All functions return 0 or an errno value.
class FormatOffer {
  public:
    explicit FormatOffer(std::vector<FormatDescription> formats);

    int describeFormat(v4l2_fmtdesc& entry) const;
    int describeSize(v4l2_frmsizeenum& entry) const;
    int describeInterval(v4l2_frmivalenum& entry) const;

    // The offered format nearest to what is asked: an unknown pixel format becomes the first one,
    // the size the one whose area differs least.
    PictureFormat nearest(std::uint32_t pixelFormat, Size wanted) const;

    // The offered rate nearest to the wanted interval; the first one for an interval of zero.
    int nearestRate(std::uint32_t pixelFormat, v4l2_fract interval) const;

  private:
    const FormatDescription* find(std::uint32_t pixelFormat) const;

    std::vector<FormatDescription> formats_;
};

// The record that a driver hands back for a format.
v4l2_pix_format toPixFormat(const PictureFormat& format);

} // namespace doccam::virtualcam
