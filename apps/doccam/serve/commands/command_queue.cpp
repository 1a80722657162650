#include "serve/commands/command_queue.h"

namespace doccam::serve {

bool CommandQueue::offer(std::function<void()>& command) {
    {
        const std::lock_guard lock(mutex_);
        if (closed_) {
            throw Busy("the server is ending");
        }
        if (waiting_.size() >= longest_ + idle_) {
            return false;
        }
        waiting_.push_back(std::move(command));
    }
    changed_.notify_one();
    return true;
}

bool CommandQueue::serve(std::chrono::milliseconds patience) {
    std::function<void()> command;
    {
        std::unique_lock lock(mutex_);
        ++idle_;
        changed_.wait_for(lock, patience, [&] { return closed_ || !waiting_.empty(); });
        --idle_;
        if (closed_) {
            return false;
        }
        if (waiting_.empty()) {
            return true;
        }
        command = std::move(waiting_.front());
        waiting_.pop_front();
    }
    command();
    return true;
}

void CommandQueue::serve() {
    while (serve(std::chrono::hours(1))) {
    }
}

void CommandQueue::close() {
    std::deque<std::function<void()>> dropped;
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        dropped.swap(waiting_);
    }
    changed_.notify_all();
}

} // namespace doccam::serve
