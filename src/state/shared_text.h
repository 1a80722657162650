// Texts that a host thread and the streaming thread exchange without a lock.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>

namespace doccam {

// A path of up to 254 bytes. One thread stores, another may load at any time and gets one of the
// stored paths whole, never a mixture.
class SharedPath {
  public:
    static constexpr std::size_t kCapacity = 255;
    using Text = std::array<char, kCapacity>;

    // True when text fits with its terminating zero.
    static bool fits(std::string_view text) { return text.size() < kCapacity; }

    // Fills the field with zero bytes and copies text, which must fit.
    void store(std::string_view text);

    // A zero-terminated copy.
    Text load() const;

  private:
    // Odd while a store is under way.
    std::atomic<unsigned> version_{0};
    std::array<std::atomic<char>, kCapacity> bytes_{};
};

// A text of any length. One thread publishes; other threads may read the last text. A pointer from
// current() is valid until the text after the next one is published.
class PublishedText {
  public:
    void publish(std::string text);
    const char* current() const;

  private:
    std::array<std::string, 2> slots_;
    std::atomic<unsigned> live_{0};
};

} // namespace doccam
