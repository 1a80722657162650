// Finding the sheet in the live picture, beside the streaming thread.
#pragma once

#include "pages/sheets.h"
#include "serve/commands/event_feed.h"

#include <opencv2/core/mat.hpp>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace doccam::serve {

// Publishes the topic "sheet", at most fifteen times a second: the newest sheet, or null.
class SheetFinder {
  public:
    explicit SheetFinder(EventFeed& events);
    ~SheetFinder();
    SheetFinder(const SheetFinder&) = delete;
    SheetFinder& operator=(const SheetFinder&) = delete;

    // Whether anybody wants to know; initially not. Any thread.
    void setWanted(bool wanted);

    // Gives width x height pixels, red first, which are reduced or ignored. Streaming thread.
    void give(unsigned char* pixels, int width, int height);

    // There is no picture any more. Any thread.
    void forget();

  private:
    void run();
    bool awaitFrame();
    void look();
    void publish(const std::optional<host::FoundSheet>& sheet, cv::Size frame);

    EventFeed& events_;
    std::mutex mutex_;
    std::condition_variable changed_;
    cv::Mat given_; // reduced
    bool wanted_ = false;
    bool free_ = true; // to take the next frame
    bool fresh_ = false;
    bool forgotten_ = false;
    bool closed_ = false;
    cv::Mat frame_;
    std::optional<host::FoundSheet> last_;
    std::jthread thread_;
};

} // namespace doccam::serve
