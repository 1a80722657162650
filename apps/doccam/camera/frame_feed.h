// Distributes the process's single subscription to frames and faults.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace doccam::host {

struct StillFault {
    int cause = 0; // one of DoccamCause
    std::string message;
};

class FrameFeed {
  public:
    // Called on the streaming thread with width x height pixels, red first, rows back to back,
    // valid during the call.
    using Listener = std::function<void(unsigned char* pixels, int width, int height)>;

    // The first call registers the library's callbacks. Make it before a camera is opened.
    static FrameFeed& instance();

    // Replaces the listener; an empty one removes it. On return, the previous listener is not
    // running. Not from a listener.
    void listen(Listener listener);

    // Frames since the last restart. Any thread.
    std::uint64_t frames() const;

    // Why the stream ended; none while it runs.
    std::optional<std::string> ended() const;

    // Returns why the last still failed, if it did, and forgets it.
    std::optional<StillFault> takeStillFault();

    // Becomes readable with each frame and fault; reset by acknowledge().
    int descriptor() const { return descriptor_; }

    void acknowledge() const;

    // Forgets frames and faults. Call before a camera is opened.
    void restart();

  private:
    FrameFeed();

    static void onFrame(unsigned char* pixels, int width, int height);
    static void onFault(int fault, const char* message);

    const int descriptor_;
    std::mutex listening_;
    Listener listener_;
    mutable std::mutex mutex_;
    std::uint64_t frames_ = 0;
    std::optional<std::string> ended_;
    std::optional<StillFault> stillFault_;
};

} // namespace doccam::host
