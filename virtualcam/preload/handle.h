// One open of a virtual node.
#pragma once

#include "device/capture_device.h"

#include <memory>
#include <mutex>
#include <set>

namespace doccam::virtualcam {

// Like an open file, lives until its last descriptor is closed and its last call has returned.
class Handle {
  public:
    Handle(ClientId client, std::shared_ptr<CaptureDevice> device, Identity identity, int node,
           bool metadata);
    ~Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    // Creates a descriptor that select() and poll() report readable when a frame can be fetched.
    // Returns it, or -1 with errno set.
    int createDescriptor(int openFlags);

    void addDescriptor(int descriptor);
    void dropDescriptor(int descriptor);

    // Returns 0 or an errno value.
    int request(std::uint32_t request, void* argument, bool nonBlocking);
    short pollErrors() const;

    int node() const { return node_; }

    bool metadata() const { return metadata_; }

    CaptureDevice& device() const { return *device_; }

  private:
    void announce(std::optional<CaptureDevice::Time> ready);

    const ClientId client_;
    const std::shared_ptr<CaptureDevice> device_;
    const Identity identity_;
    const int node_;
    const bool metadata_;
    std::mutex mutex_;
    std::set<int> descriptors_;
};

} // namespace doccam::virtualcam
