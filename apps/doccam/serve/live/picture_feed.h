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

// Each viewer takes the newest picture when it is ready for one; those it was too slow for are
// lost to it alone. Any thread.
class PictureFeed {
  public:
    // A picture and its number. Numbers begin with 1 and grow.
    struct Shown {
        std::uint64_t number = 0;
        std::shared_ptr<const Jpeg> picture;
    };

    // Replaces the newest picture. Never waits for a viewer.
    void publish(Jpeg picture);

    // Waits until a viewer waits for a picture: without one none need be encoded. False after
    // close().
    bool awaitViewer();

    // Waits for a picture newer than number. Without one in time, or after close(), the result has
    // no picture.
    Shown next(std::uint64_t number, std::chrono::milliseconds patience);

    // Forgets the newest picture: there is none to show until the next one.
    void clear();

    // Ends all waiting, now and later.
    void close();
    bool closed() const;

  private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::condition_variable wanted_;
    int waiting_ = 0;
    Shown newest_;
    bool closed_ = false;
};

} // namespace doccam::serve
