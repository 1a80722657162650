// The newest encoded picture, shared by all viewers.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace doccam::serve {

using Jpeg = std::vector<unsigned char>;

// Each viewer takes the newest picture when it is ready; a slow viewer misses pictures without
// affecting others. Any thread.
class PictureFeed {
  public:
    // A picture and its number. Numbers start at 1 and grow.
    struct Shown {
        std::uint64_t number = 0;
        std::shared_ptr<const Jpeg> picture;
        bool closed = false;
    };

    // Replaces the newest picture. Never waits for a viewer.
    void publish(Jpeg picture);

    // Waits until a viewer is waiting, as otherwise no picture needs encoding. False after close().
    bool awaitViewer();

    // Waits for a picture newer than number. On a timeout or after close() the result has no
    // picture.
    Shown next(std::uint64_t number, std::chrono::milliseconds patience);

    // Drops the newest picture, so that there is none until the next.
    void clear();

    // Ends all waiting, now and later.
    void close();

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::condition_variable wanted_;
    int waiting_ = 0;
    Shown newest_;
    bool closed_ = false;
};

} // namespace doccam::serve
