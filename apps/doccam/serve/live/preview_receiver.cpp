#include "serve/live/preview_receiver.h"

#include "serve/commands/requests.h"

#include <doccam/doccam.h>

#include <atomic>

namespace doccam::serve {
namespace {

// Global, since the library's callback takes no context.
std::atomic<PictureHandover*> receiver{nullptr};
std::atomic<EventFeed*> listener{nullptr};

// Where the whole frame lies in the form, in form pixels.
void tellPlace(EventFeed& events, const cv::Rect& place) {
    static cv::Rect last; // only the streaming thread comes here
    if (place != last) {
        last = place;
        events.set(
            "place",
            Json{{"x", place.x}, {"y", place.y}, {"width", place.width}, {"height", place.height}}
                .dump());
    }
}

void onPreview(unsigned char* pixels, int width, int height, int startX, int startY) {
    if (PictureHandover* const handover = receiver.load()) {
        handover->give(pixels, {startX, startY, width, height});
    }
    if (EventFeed* const feed = listener.load()) {
        tellPlace(*feed, {startX, startY, width, height});
    }
}

} // namespace

void receivePreviews(PictureHandover& handover, EventFeed& events) {
    SetWebDataCallback(onPreview);
    receiver = &handover;
    listener = &events;
}

void receiveNoPreviews() {
    receiver = nullptr;
    listener = nullptr;
}

} // namespace doccam::serve
