// The rows' input: one picture at the camera's full size, as the camera sends it.
#pragma once

#include "device/frame_source.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

namespace doccam::bench {

inline constexpr int kWidth = 3264;
inline constexpr int kHeight = 2448;

struct Picture {
    std::string name;
    std::string photo;           // path of the photograph; empty: the drawn scene
    virtualcam::FrameBytes jpeg; // 4:2:2, quality 85
    virtualcam::FrameBytes yuyv;
    cv::Mat pixels; // the decoded jpeg, red first; rows must not write to it
};

// The photographs (JPEG or PNG) in the folder DOCCAM_PHOTOS, or else the drawn scene.
const std::vector<Picture>& pictures();

} // namespace doccam::bench
