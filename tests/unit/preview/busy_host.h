// A host thread that changes the view without a pause.
#pragma once

#include <atomic>
#include <thread>

namespace doccam::test {

// Ten thousand random turns, forms, zooms and pans, and more until framesWanted frames have been
// shown meanwhile; then a form of kFormWidth x kFormHeight of the unturned frame.
class BusyHost {
  public:
    static constexpr int kFormWidth = 260;
    static constexpr int kFormHeight = 200;

    BusyHost(const std::atomic<int>& framesShown, int framesWanted);
    ~BusyHost();
    BusyHost(const BusyHost&) = delete;
    BusyHost& operator=(const BusyHost&) = delete;

    bool done() const { return done_; }

  private:
    std::atomic<bool> done_{false};
    std::thread thread_;
};

} // namespace doccam::test
