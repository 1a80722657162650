// Answers that go on: the preview and the events.
#pragma once

#include "serve/event_feed.h"
#include "serve/picture_feed.h"
#include "serve/seats.h"

#include <httplib.h>

#include <string>

namespace doccam::serve {

// Pictures as parts of one multipart answer, until the viewer leaves or stalls for long. 503 when
// all seats are taken.
void streamPreview(httplib::Response& response, PictureFeed& pictures, Seats& viewers);

// All topics, then each that changes, as server-sent events. 503 when all seats are taken.
void streamEvents(httplib::Response& response, EventFeed& events, Seats& listeners);

// All topics as one JSON object, and the number of viewers.
std::string stateOf(EventFeed& events, int viewers);

} // namespace doccam::serve
