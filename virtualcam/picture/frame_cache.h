// Encoded frames, each made once per process.
#pragma once

#include "device/frame_source.h"

#include <opencv2/core.hpp>

#include <array>
#include <memory>
#include <mutex>
#include <string>

namespace doccam::virtualcam {

// One picture at one size in one format, with several patterns of noise.
class PictureFrames {
  public:
    static constexpr std::uint32_t kPatterns = 3;

    PictureFrames(std::string photo, SceneSettings scene, std::uint32_t pixelFormat, Size size);

    // The frame with the noise pattern for number.
    FrameBytes frame(std::uint32_t number);

  private:
    FrameBytes encode(std::uint32_t pattern);

    const std::string photo_;
    const SceneSettings scene_;
    const std::uint32_t pixelFormat_;
    const Size size_;
    std::mutex mutex_;
    std::array<FrameBytes, kPatterns> encoded_;
};

// The frames of a picture, cached until newer pictures evict them.
std::shared_ptr<PictureFrames> cachedFrames(const std::string& photo, const SceneSettings& scene,
                                            std::uint32_t pixelFormat, Size size);

} // namespace doccam::virtualcam
