// Two emulated cameras of different models, and what the kernel makes of them.
#pragma once

#include "vm/camera/usb_camera.h"
#include "vm/device_events.h"
#include "vm/sheet_frames.h"

namespace doccam::vm {

// A camera with the frames it sends, which come first so that they live longer.
struct BenchCamera {
    explicit BenchCamera(const virtualcam::CameraDescription& description)
      : frames(description.scene)
      , usb(description, frames) {}

    SheetFrames frames;
    UsbCamera usb;
};

class Bench {
  public:
    // Plugs both in, the later model first, and waits for the device manager.
    Bench();

    void plugIn(BenchCamera& camera);
    void unplug(BenchCamera& camera);

    // The camera behind the library's index.
    BenchCamera& camera(int index) { return index == 0 ? earlier_ : later_; }

    // Prints the kernel and, for each capture node, its driver and the camera's USB numbers.
    static void printGuest();

  private:
    DeviceEvents events_;
    BenchCamera earlier_; // in the table of models
    BenchCamera later_;
};

// How many descriptors of this process lead to video devices.
int openVideoNodes();

} // namespace doccam::vm
