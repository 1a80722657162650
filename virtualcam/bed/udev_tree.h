// The virtual cameras as udev sees them: a mocked device tree.
#pragma once

#include "control.h"

#include <memory>
#include <string>

namespace doccam::virtualcam {

// A umockdev test bed. This process sees its devices when libumockdev-preload is loaded, and so
// does every child that has that library and the tree's folder in its environment.
class UdevTree {
  public:
    // The order in which the two nodes appear, reversed when a camera is plugged in again.
    enum class Order { kCaptureFirst, kMetadataFirst };

    UdevTree();
    ~UdevTree();
    UdevTree(const UdevTree&) = delete;
    UdevTree& operator=(const UdevTree&) = delete;

    // Adds the USB device at a place (0, 1, ...) and its two nodes. Throws std::runtime_error if
    // umockdev refuses it.
    void add(const CameraDescription& description, int place, Nodes nodes,
             Order order = Order::kCaptureFirst);
    void remove(int place, Nodes nodes);

    // The folder that replaces the root of the file system; the constructor sets UMOCKDEV_DIR to
    // it.
    std::string folder() const;

  private:
    class Bed;
    std::unique_ptr<Bed> bed_;
};

} // namespace doccam::virtualcam
