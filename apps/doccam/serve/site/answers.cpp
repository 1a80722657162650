#include "serve/site/answers.h"

#include "host/failure.h"
#include "serve/commands/command_queue.h"
#include "serve/http/plain_answer.h"
#include "serve/live/live_camera.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <utility>

namespace doccam::serve {
namespace {

bool sendFile(httplib::Response& response, const std::string& path, const char* type,
              const std::function<void()>& sent = {}) {
    auto file = std::make_shared<std::ifstream>(path, std::ios::binary);
    std::error_code error;
    const auto bytes = std::filesystem::file_size(path, error);
    if (!*file || error || bytes == 0) {
        return false;
    }
    response.set_content_provider(
        bytes, type,
        [file](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            std::array<char, std::size_t{64} * 1024> buffer;
            file->seekg(static_cast<std::streamoff>(offset));
            file->read(buffer.data(),
                       static_cast<std::streamsize>(std::min(length, buffer.size())));
            const auto count = static_cast<std::size_t>(file->gcount());
            return count > 0 && sink.write(buffer.data(), count);
        },
        [sent](bool complete) {
            if (complete && sent) {
                sent();
            }
        });
    return true;
}

const char* typeOf(const std::string& path) {
    return path.ends_with(".png") ? "image/png" : "image/jpeg";
}

std::size_t placeOf(const PageStore& pages, int id) {
    const std::vector<Page> all = pages.pages();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Page& page) { return page.kept.id == id; });
    return static_cast<std::size_t>(found - all.begin()) + 1;
}

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
        if (shown.closed) {
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
    std::shared_ptr<void> other;
    std::uint64_t version = 0;

    bool operator()(httplib::DataSink& sink) {
        const EventFeed::News news = events.next(version, kLookForViewer);
        if (news.closed) {
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

Seats::Seats(int count, std::function<void(int)> changed)
  : count_(count)
  , state_(std::make_shared<State>()) {
    state_->changed = std::move(changed);
}

// Call with the lock held.
void Seats::State::add(int difference) {
    taken += difference;
    if (changed) {
        changed(taken);
    }
}

std::shared_ptr<void> Seats::take() {
    const std::lock_guard lock(state_->mutex);
    if (state_->taken >= count_) {
        return nullptr;
    }
    state_->add(1);
    return {this, [state = state_](void*) {
                const std::lock_guard relock(state->mutex);
                state->add(-1);
            }};
}

int Seats::taken() const {
    const std::lock_guard lock(state_->mutex);
    return state_->taken;
}

void answerError(httplib::Response& response, int status, const std::string& reason) {
    response.status = status;
    response.set_content(errorBody(reason), "application/json");
}

void answerException(const httplib::Request& /*request*/, httplib::Response& response,
                     std::exception_ptr error) {
    try {
        std::rethrow_exception(error);
    } catch (const BadRequest& problem) {
        answerError(response, 400, problem.what());
    } catch (const BadChange& problem) {
        answerError(response, 400, problem.what());
    } catch (const NoSuchPage& problem) {
        answerError(response, 404, problem.what());
    } catch (const NotNow& problem) {
        answerError(response, 409, problem.what());
    } catch (const TrayError& problem) {
        answerError(response, 409, problem.what());
    } catch (const Busy& problem) {
        answerError(response, 503, problem.what());
        response.set_header("Retry-After", "5");
    } catch (const Refused& problem) {
        answerError(response, 502, problem.what());
    } catch (const host::Failure& problem) {
        answerError(response, 502, problem.what());
    } catch (const std::exception& problem) {
        answerError(response, 500, problem.what());
    }
}

void answerPage(httplib::Response& response, PageStore& pages, int id) {
    const auto picture = pages.pictures().picture(pages.page(id).kept);
    if (!sendFile(response, picture->path, typeOf(picture->path))) {
        answerError(response, 404, "there is no such page");
        return;
    }
    const std::string name = "page-" + std::to_string(placeOf(pages, id)) +
                             std::filesystem::path(picture->path).extension().string();
    response.set_header("Content-Disposition", "inline; filename=\"" + name + "\"");
}

void answerThumbnail(httplib::Response& response, PageStore& pages, int id) {
    response.set_content(*pages.pictures().thumbnail(pages.page(id).kept), "image/jpeg");
}

void answerFrame(httplib::Response& response, const PageStore& pages, int id) {
    const Page page = pages.page(id);
    const host::FrameFile frame = pages.frame(page);
    response.set_content(reinterpret_cast<const char*>(frame.data()), frame.size(),
                         typeOf(page.kept.frame));
}

void answerDocument(httplib::Response& response, const std::string& path,
                    const std::function<void()>& sent) {
    const bool found = sendFile(response, path, "application/pdf", sent);
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    if (!found) {
        answerError(response, 404, "there is no document");
        return;
    }
    response.set_header("Content-Disposition", "attachment; filename=\"pages.pdf\"");
}

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

void streamEvents(httplib::Response& response, EventFeed& events, Seats& listeners,
                  std::shared_ptr<void> other) {
    auto seat = listeners.take();
    if (!seat) {
        answerError(response, 503, "there are too many listeners");
        return;
    }
    auto stream =
        std::make_shared<EventStream>(EventStream{events, std::move(seat), std::move(other)});
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
