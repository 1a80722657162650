// Streaming responses: the preview and the events.
#pragma once

#include "serve/commands/event_feed.h"
#include "serve/live/picture_feed.h"
#include "serve/live/seats.h"

#include <httplib.h>

#include <string>

namespace doccam::serve {

// Pictures as parts of a multipart response, until the viewer disconnects or stalls. raw sends them
// as plain bytes for scripts, which in some browsers cannot read multipart responses. 503 if all
// seats are taken.
void streamPreview(httplib::Response& response, PictureFeed& pictures, Seats& viewers, bool raw);

// All topics, then each change, as server-sent events. 503 if all seats are taken.
void streamEvents(httplib::Response& response, EventFeed& events, Seats& listeners);

// All topics as one JSON object, and the numbers of viewers and listeners.
std::string stateOf(EventFeed& events, const Seats& viewers, const Seats& listeners);

} // namespace doccam::serve
