// Virtual cameras that both udev and the device calls of this process know.
#pragma once

#include "bed/udev_tree.h"
#include "control.h"

#include <map>
#include <optional>

namespace doccam::virtualcam {

// Needs libdoccam-virtualcam.so and libumockdev-preload.so.0 preloaded. At most one at a time. Use
// its members rather than those of control.h to plug cameras, so that both sides agree.
class TestBed {
  public:
    // Begins without any camera. Throws std::runtime_error where the preloads are missing.
    TestBed();
    // Removes all cameras.
    ~TestBed();
    TestBed(const TestBed&) = delete;
    TestBed& operator=(const TestBed&) = delete;

    CameraId add(const CameraDescription& description);
    void remove(CameraId camera);

    void unplug(CameraId camera);
    // As at a real replug the metadata node appears first.
    void plug(CameraId camera);

    // "/dev/videoN" of the capture node; empty while unplugged.
    std::string path(CameraId camera) const;

  private:
    struct Place {
        int number;
        CameraDescription description;
        std::optional<Nodes> nodes;
    };

    UdevTree tree_;
    std::map<CameraId, Place> places_;
    int nextPlace_ = 0;
};

} // namespace doccam::virtualcam
