// Tests that run with virtual cameras attached.
#pragma once

#include "bed/test_bed.h"
#include "control.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace doccam::test {

// Starts every test without a camera and removes whatever the test plugged in. Sleeps of the code
// under test last their full time unless the test sets a scale.
class BareCameraTest : public ::testing::Test {
  protected:
    // A camera that delivers frames as fast as they are dequeued.
    static virtualcam::CameraDescription fastCamera(const std::string& vendor = "0c45",
                                                    const std::string& product = "6366") {
        virtualcam::CameraDescription camera = virtualcam::documentCamera(vendor, product);
        camera.intervalMs = 0;
        return camera;
    }

    virtualcam::TestBed bed_;
};

// Starts with two cameras of different models. The one whose model is later in the table of
// supported models has the lower node numbers.
class CameraTest : public BareCameraTest {
  protected:
    using Formats = std::vector<virtualcam::FormatDescription>;

    explicit CameraTest(const Formats& formats = virtualcam::documentCameraFormats())
      : later_(bed_.add(offering(formats, fastCamera("0c45", "6366"))))
      , earlier_(bed_.add(offering(formats, secondCamera()))) {}

    static virtualcam::CameraDescription offering(const Formats& formats,
                                                  virtualcam::CameraDescription camera) {
        camera.formats = formats;
        return camera;
    }

    static virtualcam::CameraDescription secondCamera() {
        virtualcam::CameraDescription camera = fastCamera("1778", "0210");
        camera.card = "Sheet Cam: Sheet Cam";
        return camera;
    }

    const virtualcam::CameraId later_;   // 0c45:6366, /dev/video0 and 1
    const virtualcam::CameraId earlier_; // 1778:0210, /dev/video2 and 3
};

} // namespace doccam::test
