// Answers that go on: the preview and the events.
#pragma once

#include "serve/commands/event_feed.h"
#include "serve/live/picture_feed.h"
#include "serve/live/seats.h"

#include <httplib.h>

#include <string>

namespace doccam::serve {

// Pictures as parts of one multipart answer, until the viewer leaves or stalls for long; raw says
// that a program takes the parts apart, to which some browsers give no multipart answer. 503 when
// all seats are taken.
void streamPreview(httplib::Response& response, PictureFeed& pictures, Seats& viewers, bool raw);

// All topics, then each that changes, as server-sent events. 503 when all seats are taken.
void streamEvents(httplib::Response& response, EventFeed& events, Seats& listeners);

// All topics as one JSON object, and the numbers of viewers and listeners.
std::string stateOf(EventFeed& events, const Seats& viewers, const Seats& listeners);

} // namespace doccam::serve
