#include "serve/http/workers.h"

#include <utility>

namespace doccam::serve {

Workers::Workers(std::size_t threads, std::size_t longest)
  : longest_(longest) {
    threads_.reserve(threads);
    for (std::size_t i = 0; i < threads; ++i) {
        threads_.emplace_back([this] { run(); });
    }
}

Workers::~Workers() {
    std::deque<std::function<void()>> dropped;
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        dropped.swap(waiting_);
    }
    changed_.notify_all();
}

bool Workers::take(std::function<void()>& work) {
    {
        const std::lock_guard lock(mutex_);
        if (waiting_.size() >= longest_ + idle_) {
            return false;
        }
        waiting_.push_back(std::move(work));
    }
    changed_.notify_one();
    return true;
}

void Workers::run() {
    for (;;) {
        std::function<void()> work;
        {
            std::unique_lock lock(mutex_);
            ++idle_;
            changed_.wait(lock, [&] { return closed_ || !waiting_.empty(); });
            --idle_;
            if (closed_) {
                return;
            }
            work = std::move(waiting_.front());
            waiting_.pop_front();
        }
        work();
    }
}

} // namespace doccam::serve
