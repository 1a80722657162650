#include "state/shared_text.h"

#include <utility>

namespace doccam {

void SharedPath::store(std::string_view path) {
    const std::lock_guard lock(mutex_);
    path_ = path;
}

std::string SharedPath::load() const {
    const std::lock_guard lock(mutex_);
    return path_;
}

void PublishedText::publish(std::string text) {
    const unsigned next = 1 - live_.load(std::memory_order_relaxed);
    slots_[next] = std::move(text);
    live_.store(next, std::memory_order_release);
}

const char* PublishedText::current() const {
    return slots_[live_.load(std::memory_order_acquire)].c_str();
}

} // namespace doccam
