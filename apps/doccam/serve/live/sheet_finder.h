// Finding the sheet in the live picture, beside the streaming thread.
#pragma once

#include "pages/sheets.h"
#include "serve/commands/event_feed.h"
#include "serve/live/frame_looks.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam::serve {

// Publishes the topic "sheet", at most fifteen times a second: the newest sheet, or null.
class SheetFinder {
  public:
    explicit SheetFinder(EventFeed& events);

    // The frames to find it in; initially none.
    FrameLooks& looks() { return looks_; }

  private:
    void look(cv::Mat& frame);
    void publish(const std::optional<host::FoundSheet>& sheet, cv::Size frame);

    EventFeed& events_;
    std::optional<host::FoundSheet> last_;
    FrameLooks looks_; // ends before the others
};

} // namespace doccam::serve
