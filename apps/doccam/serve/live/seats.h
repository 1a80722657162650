// A limited number of seats, such as for viewers.
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

    // A seat, freed with its last copy; null if all are taken.
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
