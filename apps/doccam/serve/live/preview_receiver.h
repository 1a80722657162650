// The library's preview pictures, passed on.
#pragma once

#include "serve/commands/event_feed.h"
#include "serve/live/picture_handover.h"

namespace doccam::serve {

// From now on gives previews to handover, and publishes the topic "place" when the frame moves in
// the form. One receiver at a time.
void receivePreviews(PictureHandover& handover, EventFeed& events);

// Call when no session is open, before the receivers end.
void receiveNoPreviews();

} // namespace doccam::serve
