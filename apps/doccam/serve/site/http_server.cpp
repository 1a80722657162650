#include "serve/site/http_server.h"

#include "host/failure.h"
#include "serve/access/admission.h"
#include "serve/http/plain_answer.h"
#include "serve/site/page_files.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

namespace doccam::serve {
namespace {

constexpr int kMaximumListeners = 16;
// Viewers and listeners occupy a thread each; the rest is for pages and commands.
constexpr int kThreads = 48;
constexpr std::size_t kMaximumWaiting = 32;
constexpr std::size_t kLongestPath = 100;
constexpr std::size_t kLongestBody = std::size_t{64} * 1024;

// In a large buffer a slow viewer's pictures would become outdated.
constexpr int kSendBuffer = 256 * 1024;

void prepareSocket(socket_t socket) {
    const int on = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
}

// Reasons for cpp-httplib's own refusals.
const char* reasonOf(int status) {
    switch (status) {
    case 404:
        return "there is nothing at this address";
    default:
        return status < 500 ? "this is no request that the server understands"
                            : "the server failed; try again";
    }
}

void configure(httplib::Server& server) {
    server.set_socket_options(prepareSocket);
    server.set_tcp_nodelay(true);
    server.set_payload_max_length(kLongestBody);
    server.set_default_headers({safeHeaders().begin(), safeHeaders().end()});
    server.set_exception_handler(answerException);
    server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) {
            answerError(response, response.status, reasonOf(response.status));
        }
    });
}

const PageFile* pageFileAt(std::string_view path) {
    const auto files = pageFiles();
    const auto found = std::find_if(files.begin(), files.end(),
                                    [&](const PageFile& file) { return file.path == path; });
    return found == files.end() ? nullptr : &*found;
}

} // namespace

HttpServer::HttpServer(const Sources& sources)
  : sources_(sources)
  , listeners_(kMaximumListeners)
  , requests_(kMaximumWaiting) {
    configure(server_);
    addResponses();
    addPages();
    addCommands();
}

HttpServer::~HttpServer() {
    sources_.queue.close();
    sources_.documents.close();
    sources_.pages.pictures().close();
    sources_.pictures.close();
    sources_.events.close();
    reception_.reset();
    server_.stopStreams();
    requests_.close();
}

int HttpServer::bind(const std::string& address, int port) {
    const int taken = server_.takePort(address, port);
    if (taken == 0) {
        throw host::Failure(host::kUsage, "The server cannot listen at " + address +
                                              "; choose a free --port, or an address of this "
                                              "machine for --listen.");
    }
    return taken;
}

void HttpServer::start(const AccessRules& rules) {
    rules_ = rules;
    for (int i = 0; i < kThreads; ++i) {
        workers_.push_back(ownedThread([this] { requests_.serve(); }));
    }
    reception_.emplace(
        server_.listener(),
        Desk{[this](const RequestHead& head) { return answerAtOnce(head); },
             [this](const RequestHead& head, UniqueFd& socket, const std::string& body) {
                 return handOver(head, socket, body);
             }});
}

// The page itself contains no secret, and a browser fetches it before it can send a token.
std::optional<std::string> HttpServer::answerAtOnce(const RequestHead& head) {
    const PageFile* const file = head.method == "POST" ? nullptr : pageFileAt(head.path());
    if (const auto refusal = refusalOf({rules_, tickets_, file != nullptr, kLongestBody}, head)) {
        return refusalBytes(*refusal, head);
    }
    if (file != nullptr) {
        return bytesOf({200, file->type, file->content, head.method != "HEAD"});
    }
    return std::nullopt;
}

std::optional<std::string> HttpServer::handOver(const RequestHead& head, UniqueFd& socket,
                                                const std::string& body) {
    auto owned = std::make_shared<UniqueFd>(std::move(socket));
    std::function<void()> work = [this, owned, text = plainHead(head) + body] {
        server_.process(*owned, text);
    };
    if (requests_.offer(work)) {
        return std::nullopt;
    }
    socket = std::move(*owned);
    return refusalBytes({503, "too many requests are waiting; try again"}, head);
}

void HttpServer::addResponses() {
    server_.Get("/preview", [this](const auto& request, auto& response) {
        streamPreview(response, sources_.pictures, sources_.viewers, request.has_param("raw"));
    });
    server_.Get("/events", [this](const auto& request, auto& response) {
        streamEvents(response, sources_.events, listeners_,
                     request.has_param("codes") ? sources_.watchers.take() : nullptr);
    });
    server_.Get("/api/state", [this](const auto&, auto& response) {
        response.set_content(stateOf(sources_.events, sources_.viewers, listeners_),
                             "application/json");
    });
}

void HttpServer::addPages() {
    const auto idIn = [](const auto& request) { return std::stoi(request.matches[1].str()); };
    server_.Get(R"(/pages/(\d{1,9})\.jpg)", [this, idIn](const auto& request, auto& response) {
        answerPage(response, sources_.pages, idIn(request));
    });
    server_.Get(R"(/pages/(\d{1,9})/thumbnail\.jpg)",
                [this, idIn](const auto& request, auto& response) {
                    answerThumbnail(response, sources_.pages, idIn(request));
                });
    server_.Get(R"(/pages/(\d{1,9})/frame)", [this, idIn](const auto& request, auto& response) {
        answerFrame(response, sources_.pages, idIn(request));
    });
    server_.Get(R"(/pages\.pdf)", [this](const auto&, auto& response) {
        const MadeDocument made = sources_.documents.make();
        answerDocument(response, made.path, [this, pages = made.pages] { noteSaved(pages); });
    });
}

// That a PDF arrived is no reason to fail when the server ends or the disk is full: the pages are
// then kept a little longer.
void HttpServer::noteSaved(const std::vector<Page>& pages) {
    try {
        sources_.queue.order([&] { sources_.pages.noteSaved(pages); });
    } catch (const std::runtime_error&) {
    }
}

void HttpServer::addCommands() {
    server_.Post("/api/tickets", [this](const auto& request, auto& response) {
        const std::string path = text(parseBody(request.body), "for", kLongestPath);
        const Json answer{{"ticket", tickets_.issue(path)},
                          {"seconds", Tickets::kLifetime.count()}};
        response.set_content(answer.dump(), "application/json");
    });
    server_.Post(R"(/api/([a-z/]{1,40}))", [this](const auto& request, auto& response) {
        const std::string name = request.matches[1].str();
        if (!Commands::knows(name)) {
            answerError(response, 404, "there is no such command");
            return;
        }
        const Json fields = parseBody(request.body);
        const Json answer =
            sources_.queue.order([&] { return sources_.commands.run(name, fields); });
        response.set_content(answer.dump(), "application/json");
    });
}

} // namespace doccam::serve
