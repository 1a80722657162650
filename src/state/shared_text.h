// Texts shared by host threads and the streaming thread.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

namespace doccam {

// A path of up to 254 bytes. Any thread may store and load; load() gives one of the stored paths.
class SharedPath {
  public:
    static constexpr std::size_t kMaximumLength = 254;

    static bool fits(std::string_view path) { return path.size() <= kMaximumLength; }

    // Throws std::bad_alloc when memory is short; the last path then stays.
    void store(std::string_view path);
    std::string load() const;

  private:
    mutable std::mutex mutex_; // a request takes it, a frame without one does not
    std::string path_;
};

// A text of any length. One thread publishes, without a lock; other threads may read the last text.
// A pointer from current() is valid until the text after the next one is published.
class PublishedText {
  public:
    void publish(std::string text);
    const char* current() const;

  private:
    std::array<std::string, 2> slots_;
    std::atomic<unsigned> live_{0};
};

} // namespace doccam
