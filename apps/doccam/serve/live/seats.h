// A limited number of places, such as those of viewers.
#pragma once

#include <functional>
#include <memory>
#include <mutex>

namespace doccam::serve {

// Any thread.
class Seats {
  public:
    // changed is called with the number of taken seats, one call at a time.
    explicit Seats(int count, std::function<void(int)> changed = {});

    // A seat, which is given back with its last copy; null when all are taken.
    std::shared_ptr<void> take();

    int taken() const;

  private:
    struct State {
        std::mutex mutex;
        int taken = 0;
        std::function<void(int)> changed;
        void add(int difference);
    };

    int count_;
    std::shared_ptr<State> state_;
};

} // namespace doccam::serve
