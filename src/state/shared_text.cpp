#include "state/shared_text.h"

#include <utility>

namespace doccam {

void SharedPath::store(std::string_view text) {
    const unsigned start = version_.load(std::memory_order_relaxed);
    version_.store(start + 1, std::memory_order_seq_cst);
    for (std::size_t i = 0; i < kCapacity; ++i) {
        bytes_[i].store(i < text.size() ? text[i] : '\0', std::memory_order_release);
    }
    version_.store(start + 2, std::memory_order_release);
}

SharedPath::Text SharedPath::load() const {
    Text copy{};
    unsigned before = 0;
    do {
        before = version_.load(std::memory_order_acquire);
        for (std::size_t i = 0; i < kCapacity; ++i) {
            copy[i] = bytes_[i].load(std::memory_order_acquire);
        }
    } while ((before & 1U) != 0 || before != version_.load(std::memory_order_relaxed));
    return copy;
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
