// Two emulated cameras of different models, seen through the kernel.
#pragma once

#include "vm/camera/usb_camera.h"
#include "vm/device_events.h"
#include "vm/sheet_frames.h"

namespace doccam::vm {

// A camera and the frames it sends; frames come first, as they must outlive the camera.
struct BenchCamera {
    explicit BenchCamera(const virtualcam::CameraDescription& description)
      : frames(description.scene)
      , usb(description, frames) {}

    SheetFrames frames;
    UsbCamera usb;
};

class Bench {
  public:
    // Plugs both in, the later model first, and waits for udev.
    Bench();

    void plugIn(BenchCamera& camera);
    void unplug(BenchCamera& camera);

    // The camera at the library's index.
    BenchCamera& camera(int index) { return index == 0 ? earlier_ : later_; }

    // Prints the kernel and, for each capture node, its driver and the camera's USB numbers.
    static void printGuest();

  private:
    DeviceEvents events_;
    BenchCamera earlier_; // in the order of the table of models
    BenchCamera later_;
};

// The number of descriptors of this process that refer to video devices.
int openVideoNodes();

} // namespace doccam::vm
