// Frames from a photo or the drawn scene, encoded once.
#pragma once

#include "device/frame_source.h"

#include <mutex>
#include <string>

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
    const std::string photo_;
    mutable std::mutex mutex_;
    SceneSettings scene_;
};

} // namespace doccam::virtualcam
