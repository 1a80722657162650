// Reading the codes before a camera, frame by frame.
#pragma once

#include "camera/camera_session.h"
#include "codes/picture_codes.h"
#include "scan/watched_frames.h"

#include <vector>

namespace doccam::host {

// Frames that come while one is read are left out, but for the newest.
class FrameCodes {
  public:
    FrameCodes(CameraSession& session, unsigned symbologies)
      : session_(session)
      , frames_(session)
      , symbologies_(symbologies) {}

    // Waits for a frame and reads its codes; also on its sheets, if they must. Throws what the
    // session throws.
    std::vector<Code> next(bool onSheets);

  private:
    CameraSession& session_;
    WatchedFrames frames_;
    WatchedFrame frame_;
    unsigned symbologies_;
};

} // namespace doccam::host
