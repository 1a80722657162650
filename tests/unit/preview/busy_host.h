// A host thread that changes the view while frames are shown.
#pragma once

#include <atomic>
#include <thread>

namespace doccam::test {

// Makes ten thousand random turns, forms, zooms and pans, then declares a form of kFormWidth x
// kFormHeight for the unturned frame. It acts in bursts that begin in mid-frame, with enough frames
// between them for some to be shown after a turn.
class BusyHost {
  public:
    static constexpr int kFormWidth = 260;
    static constexpr int kFormHeight = 200;

    // frames counts the frames begun. Destruction stops an unfinished host.
    explicit BusyHost(const std::atomic<int>& frames);
    ~BusyHost();
    BusyHost(const BusyHost&) = delete;
    BusyHost& operator=(const BusyHost&) = delete;

    bool done() const { return done_; }

  private:
    void run(const std::atomic<int>& frames);

    std::atomic<bool> done_{false};
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

} // namespace doccam::test
