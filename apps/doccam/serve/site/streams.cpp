#include "serve/site/streams.h"

#include "serve/commands/requests.h"
#include "serve/site/answers.h"

namespace doccam::serve {
namespace {

// How long a disconnected viewer of an idle stream may keep its seat.
constexpr std::chrono::seconds kLookForViewer{1};

constexpr const char* kBoundary = "picture";

bool write(httplib::DataSink& sink, const std::string& text) {
    return sink.write(text.data(), text.size());
}

// Sends the boundary right after each picture, as browsers show a part only once it has ended.
bool writePart(httplib::DataSink& sink, const Jpeg& picture) {
    const std::string head =
        "Content-Type: image/jpeg\r\nContent-Length: " + std::to_string(picture.size()) +
        "\r\n\r\n";
    return write(sink, head) &&
           sink.write(reinterpret_cast<const char*>(picture.data()), picture.size()) &&
           write(sink, std::string("\r\n--") + kBoundary + "\r\n");
}

struct PreviewStream {
    PictureFeed& pictures;
    std::shared_ptr<void> seat;
    std::uint64_t last = 0;
    bool begun = false;

    bool operator()(httplib::DataSink& sink) {
        if (!begun) {
            begun = true;
            return write(sink, std::string("--") + kBoundary + "\r\n");
        }
        const PictureFeed::Shown shown = pictures.next(last, kLookForViewer);
        if (pictures.closed()) {
            return false;
        }
        // Writing a header of the next part shows whether the viewer is still connected.
        if (shown.picture == nullptr) {
            return write(sink, "X-No-Picture: yet\r\n");
        }
        last = shown.number;
        return writePart(sink, *shown.picture);
    }
};

struct EventStream {
    EventFeed& events;
    std::shared_ptr<void> seat;
    std::uint64_t version = 0;

    bool operator()(httplib::DataSink& sink) {
        const EventFeed::News news = events.next(version, kLookForViewer);
        if (events.closed()) {
            return false;
        }
        version = news.version;
        std::string text;
        for (const EventFeed::Event& event : news.events) {
            text += "event: " + event.topic + "\ndata: " + event.text + "\n\n";
        }
        // Writing a comment shows whether the listener is still connected.
        return write(sink, text.empty() ? ":\n\n" : text);
    }
};

} // namespace

void streamPreview(httplib::Response& response, PictureFeed& pictures, Seats& viewers, bool raw) {
    auto seat = viewers.take();
    if (!seat) {
        answerError(response, 503, "there are too many viewers");
        return;
    }
    auto stream = std::make_shared<PreviewStream>(PreviewStream{pictures, std::move(seat)});
    response.set_content_provider(
        raw ? "application/octet-stream"
            : std::string("multipart/x-mixed-replace; boundary=") + kBoundary,
        [stream](std::size_t, httplib::DataSink& sink) { return (*stream)(sink); });
}

void streamEvents(httplib::Response& response, EventFeed& events, Seats& listeners) {
    auto seat = listeners.take();
    if (!seat) {
        answerError(response, 503, "there are too many listeners");
        return;
    }
    auto stream = std::make_shared<EventStream>(EventStream{events, std::move(seat)});
    response.set_content_provider(
        "text/event-stream",
        [stream](std::size_t, httplib::DataSink& sink) { return (*stream)(sink); });
}

std::string stateOf(EventFeed& events, const Seats& viewers, const Seats& listeners) {
    Json state;
    for (const EventFeed::Event& event : events.next(0, std::chrono::milliseconds(0)).events) {
        state[event.topic] = Json::parse(event.text);
    }
    state["viewers"] = viewers.taken();
    state["listeners"] = listeners.taken();
    return state.dump();
}

} // namespace doccam::serve
