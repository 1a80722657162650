// Frames from a photo or the drawn scene, encoded once.
#pragma once

#include "device/frame_source.h"

#include <map>
#include <mutex>
#include <string>
#include <tuple>

namespace doccam::virtualcam {

// All sources of the process that show the same picture share its encoded frames.
class PictureSource : public FrameSource {
  public:
    // An empty path means the drawn scene.
    PictureSource(std::string photo, SceneSettings scene);

    FrameBytes frame(std::uint32_t pixelFormat, Size size, std::uint32_t number) override;

    SceneSettings scene() const;
    void setScene(const SceneSettings& scene);

  private:
    using Repeated = std::tuple<std::uint32_t, int, int, std::uint32_t>;

    FrameBytes drawn(const SceneSettings& scene, std::uint32_t pixelFormat, Size size,
                     std::uint32_t number) const;

    const std::string photo_;
    std::mutex repeating_;
    std::map<Repeated, FrameBytes> repeated_; // by format, size and number
    mutable std::mutex mutex_;
    SceneSettings scene_;
};

} // namespace doccam::virtualcam
