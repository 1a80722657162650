// A camera on the kernel's virtual USB host controller: to the UVC driver it is real.
#pragma once

#include "vm/camera/host_port.h"
#include "vm/camera/video_requests.h"
#include "vm/camera/video_stream.h"

#include <thread>

namespace doccam::vm {

// Plug, unplug and destroy on one thread. In between, the camera's own thread serves the host and
// fetches the frames.
class UsbCamera {
  public:
    // frames must outlive the camera.
    UsbCamera(virtualcam::CameraDescription camera, virtualcam::FrameSource& frames);
    ~UsbCamera();
    UsbCamera(const UsbCamera&) = delete;
    UsbCamera& operator=(const UsbCamera&) = delete;

    const virtualcam::CameraDescription& description() const { return camera_; }

    // The device appears on the bus some time later, with its controls and settings unchanged.
    void plugIn();

    // Disconnects immediately, even in mid-transfer. Does nothing while unplugged.
    void unplug();

    int control(std::uint32_t id) const { return requests_.control(id); }

  private:
    void serve();
    bool receive();
    bool receiveInto(Bytes& bytes);
    void send(const Bytes& message);
    void handleSubmit(const Request& request);
    void handleUnlink(const Request& request);
    void handleSetup(const Request& request);
    std::optional<Bytes> read(const Setup& setup) const;
    bool write(const Setup& setup, ByteView data);
    std::optional<Bytes> descriptor(const Setup& setup) const;
    void selectSetting(const Setup& setup);

    const virtualcam::CameraDescription camera_;
    VideoRequests requests_;
    VideoStream stream_;
    UniqueFd line_;
    bool open_ = false;
    std::vector<std::uint32_t> waitingForStatus_;
    std::thread thread_;
};

} // namespace doccam::vm
