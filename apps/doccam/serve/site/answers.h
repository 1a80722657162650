// HTTP responses: errors, files and streams.
#pragma once

#include "serve/commands/event_feed.h"
#include "serve/live/picture_feed.h"
#include "serve/tray/page_store.h"

#include <httplib.h>

#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace doccam::serve {

// {"error": reason}
void answerError(httplib::Response& response, int status, const std::string& reason);

// The response to an exception from a handler.
void answerException(const httplib::Request& request, httplib::Response& response,
                     std::exception_ptr error);

// A page's picture, its thumbnail, its frame. Throw NoSuchPage, and host::Failure for damaged
// frames.
void answerPage(httplib::Response& response, PageStore& pages, int id);
void answerThumbnail(httplib::Response& response, PageStore& pages, int id);
void answerFrame(httplib::Response& response, const PageStore& pages, int id);

// The document at path, which is removed; sent is called, on the same thread, if all of it could
// be sent. 404 if there is none.
void answerDocument(httplib::Response& response, const std::string& path,
                    const std::function<void()>& sent);

// A limited number of seats, such as for viewers. Any thread.
class Seats {
  public:
    // changed is called with the number of taken seats, one call at a time.
    explicit Seats(int count, std::function<void(int)> changed = {});

    // A seat, freed with its last copy; null if all are taken.
    std::shared_ptr<void> take();

    int taken() const;

  private:
    struct State {
        std::mutex mutex;
        int taken = 0;
        std::function<void(int)> changed;
        void add(int difference);
    };

    int count_;
    std::shared_ptr<State> state_;
};

// Pictures as parts of a multipart response, which raw declares to be plain bytes, as scripts
// cannot read it in some browsers. Ends when the viewer disconnects or stalls; 503 if all seats are
// taken.
void streamPreview(httplib::Response& response, PictureFeed& pictures, Seats& viewers, bool raw);

// All topics, then each change, as server-sent events; another seat is kept as long. 503 if all
// seats are taken.
void streamEvents(httplib::Response& response, EventFeed& events, Seats& listeners,
                  std::shared_ptr<void> other);

// All topics as one JSON object, and the numbers of viewers and listeners.
std::string stateOf(EventFeed& events, const Seats& viewers, const Seats& listeners);

} // namespace doccam::serve
