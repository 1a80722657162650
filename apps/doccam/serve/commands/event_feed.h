// What the pages are told: the newest state of each topic.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace doccam::serve {

// A listener gets the newest text of each topic that has changed since it was told last, so that a
// slow one is behind by one text a topic at most. Any thread.
class EventFeed {
  public:
    struct Event {
        std::string topic;
        std::string text;
    };

    struct News {
        std::uint64_t version = 0; // to be asked for the next news with
        std::vector<Event> events; // in the order in which they were set
    };

    // Sets a topic's text; the same text again is no news. text has no line break.
    void set(const std::string& topic, const std::string& text);

    // Waits for what is newer than version; no events when nothing is in time, or after close().
    News next(std::uint64_t version, std::chrono::milliseconds patience);

    void close();
    bool closed() const;

  private:
    struct Entry {
        std::uint64_t version = 0;
        std::string text;
    };

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::uint64_t version_ = 0;
    std::map<std::string, Entry> topics_;
    bool closed_ = false;
};

} // namespace doccam::serve
