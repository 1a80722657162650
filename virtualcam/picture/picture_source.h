// Frames from a photo or from the drawn scene, encoded once and kept.
#pragma once

#include "device/frame_source.h"

#include <mutex>
#include <string>

namespace doccam::virtualcam {

// The encoded frames are shared by all sources of the process that show the same picture.
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
