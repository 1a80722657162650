// The process's one subscription to frames and faults, handed on to whoever needs them.
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

    // Registers the library's callbacks at the first call, which comes before a camera is opened.
    static FrameFeed& instance();

    FrameFeed(const FrameFeed&) = delete;
    FrameFeed& operator=(const FrameFeed&) = delete;

    // Replaces the listener; an empty one takes it away. When it returns, the listener before is
    // not running. Not from a listener.
    void listen(Listener listener);

    // Any thread. Frames since the last restart.
    std::uint64_t frames() const;

    // Why no more frames come; none while they do.
    std::optional<std::string> ended() const;

    // Why the last still failed, and forgets it; none when none did.
    std::optional<StillFault> takeStillFault();

    // Becomes readable with each frame and each fault; calmed by acknowledge().
    int descriptor() const { return descriptor_; }

    void acknowledge() const;

    // Forgets frames and faults; before a camera is opened.
    void restart();

  private:
    FrameFeed();
    ~FrameFeed();

    static void onFrame(unsigned char* pixels, int width, int height);
    static void onFault(int fault, const char* message);
    void announce() const;

    const int descriptor_;
    std::mutex listening_;
    Listener listener_;
    mutable std::mutex mutex_;
    std::uint64_t frames_ = 0;
    std::optional<std::string> ended_;
    std::optional<StillFault> stillFault_;
};

} // namespace doccam::host
