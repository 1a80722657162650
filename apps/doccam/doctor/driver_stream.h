// Streaming from a V4L2 node step by step, to identify the failing step.
#pragma once

#include "camera/picture_format.h"

#include <cstdint>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace doccam::host {

// A request that the driver refused.
class RequestFailure : public std::runtime_error {
  public:
    RequestFailure(const std::string& request, int error)
      : std::runtime_error(request)
      , error_(error) {}

    std::string request() const { return what(); }

    int error() const { return error_; }

  private:
    int error_;
};

struct DriverFormat {
    Format format = Format::kMjpeg;
    Size size;
};

struct DriverFrame {
    std::span<const std::uint8_t> bytes;
    bool damaged = false; // marked by the driver as damaged
};

// Members throw RequestFailure. The destructor ends the stream and closes the node.
class DriverStream {
  public:
    explicit DriverStream(const std::string& node);
    ~DriverStream();
    DriverStream(const DriverStream&) = delete;
    DriverStream& operator=(const DriverStream&) = delete;

    // The largest size in MJPEG, or else in YUYV; fails with EINVAL if there is neither.
    DriverFormat largestFormat() const;

    void start(const DriverFormat& format);

    // Calls use with the next frame; false if none has come for three seconds.
    bool withNextFrame(const std::function<void(const DriverFrame&)>& use);

  private:
    struct Mapping {
        void* start = nullptr;
        std::size_t length = 0;
    };

    void request(unsigned long code, const char* name, void* argument) const;
    void mapBuffer(std::uint32_t index);
    void enqueue(std::uint32_t index) const;

    int descriptor_;
    bool streaming_ = false;
    std::vector<Mapping> buffers_;
};

} // namespace doccam::host
