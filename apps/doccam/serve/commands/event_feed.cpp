#include "serve/commands/event_feed.h"

#include <algorithm>

namespace doccam::serve {

void EventFeed::set(const std::string& topic, const std::string& text) {
    {
        const std::lock_guard lock(mutex_);
        Entry& entry = topics_[topic];
        if (entry.version != 0 && entry.text == text) {
            return;
        }
        entry = {++version_, text};
    }
    changed_.notify_all();
}

EventFeed::News EventFeed::next(std::uint64_t version, std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, patience, [&] { return closed_ || version_ > version; });
    News news{version_, {}, closed_};
    if (closed_) {
        return news;
    }
    std::vector<std::pair<std::uint64_t, Event>> newer;
    for (const auto& [topic, entry] : topics_) {
        if (entry.version > version) {
            newer.push_back({entry.version, {topic, entry.text}});
        }
    }
    std::sort(newer.begin(), newer.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    for (auto& [ignored, event] : newer) {
        news.events.push_back(std::move(event));
    }
    return news;
}

void EventFeed::close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
}

} // namespace doccam::serve
