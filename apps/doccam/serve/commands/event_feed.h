// The pages' events: the newest state of each topic.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace doccam::serve {

// A listener gets the newest text of each topic that has changed since its last event, so that a
// slow one lags by at most one text per topic. Any thread.
class EventFeed {
  public:
    struct Event {
        std::string topic;
        std::string text;
    };

    struct News {
        std::uint64_t version = 0; // to pass to the next call of next()
        std::vector<Event> events; // in the order they were set
        bool closed = false;
    };

    // Sets a topic's text, which must have no line break. An unchanged text is no event.
    void set(const std::string& topic, const std::string& text);

    // Waits for events newer than version; returns none on a timeout or after close().
    News next(std::uint64_t version, std::chrono::milliseconds patience);

    void close();

  private:
    struct Entry {
        std::uint64_t version = 0;
        std::string text;
    };

    std::mutex mutex_;
    std::condition_variable changed_;
    std::uint64_t version_ = 0;
    std::map<std::string, Entry> topics_;
    bool closed_ = false;
};

} // namespace doccam::serve
