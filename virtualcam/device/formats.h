// The formats a camera offers, and how its driver adjusts requested ones.
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

    // The offered format nearest to the request: an unknown pixel format becomes the first one, the
    // size the one that differs least in area.
    PictureFormat nearest(std::uint32_t pixelFormat, Size wanted) const;

    // The offered rate nearest to interval; the first one for an interval of zero.
    int nearestRate(std::uint32_t pixelFormat, v4l2_fract interval) const;

  private:
    const FormatDescription* find(std::uint32_t pixelFormat) const;

    std::vector<FormatDescription> formats_;
};

// The record that a driver returns for a format.
v4l2_pix_format toPixFormat(const PictureFormat& format);

} // namespace doccam::virtualcam
