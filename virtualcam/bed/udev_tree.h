// The virtual cameras as udev sees them: a mocked device tree.
#pragma once

#include "control.h"

#include <memory>
#include <string>

namespace doccam::virtualcam {

// A umockdev test bed. Its devices are seen by this process when libumockdev-preload is loaded, and
// by every child that has that library and the tree's folder in its environment.
class UdevTree {
  public:
    // Order of the two nodes' appearance, which is the other way round when a camera is plugged in
    // again.
    enum class Order { kCaptureFirst, kMetadataFirst };

    UdevTree();
    ~UdevTree();
    UdevTree(const UdevTree&) = delete;
    UdevTree& operator=(const UdevTree&) = delete;

    // Adds the USB device in the given place (0, 1, ...) and its two nodes. Throws
    // std::runtime_error when the tree refuses it.
    void add(const CameraDescription& description, int place, Nodes nodes,
             Order order = Order::kCaptureFirst);
    void remove(int place, Nodes nodes);

    // The folder that stands in for the root of the file system; the constructor sets UMOCKDEV_DIR
    // to it.
    std::string folder() const;

  private:
    class Bed;
    std::unique_ptr<Bed> bed_;
};

} // namespace doccam::virtualcam
