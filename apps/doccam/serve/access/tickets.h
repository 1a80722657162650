// Short-lived permits for requests that a browser makes without headers: events, pictures,
// downloads.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

namespace doccam::serve {

// A ticket admits one request for one path within its lifetime. Any thread.
class Tickets {
  public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds kLifetime{30};
    // Beyond this the oldest unused one is dropped.
    static constexpr std::size_t kMaximumOpen = 256;

    explicit Tickets(std::function<Clock::time_point()> now = Clock::now);

    // A new ticket for a path without query.
    std::string issue(std::string_view path);

    // Whether the ticket is valid for the path; uses it up.
    bool redeem(std::string_view ticket, std::string_view path);

  private:
    struct Ticket {
        std::string text;
        std::string path;
        Clock::time_point end;
    };

    const std::function<Clock::time_point()> now_;
    std::mutex mutex_;
    std::deque<Ticket> open_; // oldest first
};

} // namespace doccam::serve
