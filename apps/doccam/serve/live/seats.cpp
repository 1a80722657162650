#include "serve/live/seats.h"

#include <utility>

namespace doccam::serve {

Seats::Seats(int count, std::function<void(int)> changed)
  : count_(count)
  , state_(std::make_shared<State>()) {
    state_->changed = std::move(changed);
}

// Call with the lock held.
void Seats::State::add(int difference) {
    taken += difference;
    if (changed) {
        changed(taken);
    }
}

std::shared_ptr<void> Seats::take() {
    const std::lock_guard lock(state_->mutex);
    if (state_->taken >= count_) {
        return nullptr;
    }
    state_->add(1);
    return {this, [state = state_](void*) {
                const std::lock_guard relock(state->mutex);
                state->add(-1);
            }};
}

int Seats::taken() const {
    const std::lock_guard lock(state_->mutex);
    return state_->taken;
}

} // namespace doccam::serve
