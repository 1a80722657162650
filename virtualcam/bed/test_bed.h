// Virtual cameras visible both to udev and to this process's device calls.
#pragma once

#include "bed/udev_tree.h"
#include "control.h"

#include <map>
#include <optional>

namespace doccam::virtualcam {

// Needs libdoccam-virtualcam.so and libumockdev-preload.so.0 preloaded. At most one at a time. Plug
// cameras through its members, not those of control.h, to keep both sides consistent.
class TestBed {
  public:
    // Starts without a camera. Throws std::runtime_error if the preloads are missing.
    TestBed();
    // Removes all cameras.
    ~TestBed();
    TestBed(const TestBed&) = delete;
    TestBed& operator=(const TestBed&) = delete;

    CameraId add(const CameraDescription& description);
    void remove(CameraId camera);

    void unplug(CameraId camera);
    // As with a real replug, the metadata node appears first.
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
