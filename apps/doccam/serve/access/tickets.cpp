#include "serve/access/tickets.h"

#include "serve/access/access.h"

#include <algorithm>
#include <utility>

namespace doccam::serve {

Tickets::Tickets(std::function<Clock::time_point()> now)
  : now_(std::move(now)) {}

std::string Tickets::issue(std::string_view path) {
    std::string text = randomToken();
    const std::lock_guard lock(mutex_);
    if (open_.size() >= kMaximumOpen) {
        open_.pop_front();
    }
    open_.push_back({text, std::string(path), now_() + kLifetime});
    return text;
}

bool Tickets::redeem(std::string_view ticket, std::string_view path) {
    const std::lock_guard lock(mutex_);
    const auto now = now_();
    while (!open_.empty() && open_.front().end <= now) {
        open_.pop_front();
    }
    const auto found = std::find_if(open_.begin(), open_.end(), [&](const Ticket& open) {
        return sameSecret(open.text, ticket) && open.path == path;
    });
    if (found == open_.end()) {
        return false;
    }
    open_.erase(found);
    return true;
}

} // namespace doccam::serve
