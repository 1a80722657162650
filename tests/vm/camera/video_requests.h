// The video class's requests on endpoint 0: picture controls and stream settings.
#pragma once

#include "description.h"
#include "vm/camera/usbip.h"

#include <chrono>
#include <map>
#include <mutex>
#include <optional>

namespace doccam::vm {

// What host and camera negotiate before a stream; format and frame are numbered from 1.
struct StreamSettings {
    std::uint8_t format = 1;
    std::uint8_t frame = 1;
    std::uint32_t interval = 0; // in 100 nanoseconds
};

// One thread serves requests; any thread may call control().
class VideoRequests {
  public:
    explicit VideoRequests(const virtualcam::CameraDescription& camera);

    // The answer to a GET request; none if the camera refuses it.
    std::optional<Bytes> get(const Setup& setup) const;

    // Whether the camera accepts a SET request.
    bool set(const Setup& setup, ByteView data);

    std::uint32_t pixelFormat() const;
    virtualcam::Size size() const;
    std::chrono::nanoseconds interval() const;

    // The current value of one of the described controls, by V4L2 control ID.
    int control(std::uint32_t id) const;

  private:
    struct Found;
    std::optional<Found> find(const Setup& setup) const;
    std::optional<Bytes> getControl(const Setup& setup) const;
    bool setControl(const Setup& setup, ByteView data);
    StreamSettings offered(StreamSettings wanted) const;
    Bytes encode(const StreamSettings& settings) const;

    const virtualcam::CameraDescription camera_;
    StreamSettings probed_;
    StreamSettings committed_;
    mutable std::mutex mutex_;
    std::map<std::uint32_t, int> values_;
};

} // namespace doccam::vm
