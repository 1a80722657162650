// Finding codes in the live picture, beside the streaming thread.
#pragma once

#include "codes/picture_codes.h"
#include "serve/commands/event_feed.h"
#include "serve/commands/requests.h"
#include "serve/live/frame_looks.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::serve {

// {"kind", "symbology", "text", "addon"}
Json toJson(const host::Code& code);

// Publishes the topic "liveCodes", at most four times a second: the codes in the newest frame that
// was read, or null while nobody wants to know.
class CodeFinder {
  public:
    explicit CodeFinder(EventFeed& events);

    // The frames to find them in; initially none.
    FrameLooks& looks() { return looks_; }

  private:
    void look(const cv::Mat& frame);
    void publish(const std::vector<host::Code>& codes, cv::Size frame);

    EventFeed& events_;
    FrameLooks looks_; // ends before the others
};

} // namespace doccam::serve
