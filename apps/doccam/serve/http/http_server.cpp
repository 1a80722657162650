#include "serve/http/http_server.h"

#include "host/failure.h"
#include "serve/http/answers.h"
#include "serve/http/page_files.h"
#include "serve/http/streams.h"

namespace doccam::serve {
namespace {

constexpr int kMostListeners = 16;
// Viewers and listeners keep a thread each; the rest is for pages and commands.
constexpr std::size_t kThreads = 48;
constexpr std::size_t kLongestBody = std::size_t{64} * 1024;

// A slow viewer's pictures would grow old in a large buffer.
constexpr int kSendBuffer = 256 * 1024;

void prepareSocket(socket_t socket) {
    const int on = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
}

// What the server refuses by itself.
const char* reasonOf(int status) {
    switch (status) {
    case 404:
        return "there is nothing at this address";
    case 413:
        return "the body is too long";
    case 414:
        return "the address is too long";
    default:
        return status < 500 ? "this is no request that the server understands"
                            : "the server failed; try again";
    }
}

void configure(httplib::Server& server) {
    server.set_socket_options(prepareSocket);
    server.set_tcp_nodelay(true);
    server.set_payload_max_length(kLongestBody);
    server.set_default_headers(safeHeaders());
    server.set_exception_handler(answerException);
    server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) {
            answerError(response, response.status, reasonOf(response.status));
        }
    });
}

} // namespace

HttpServer::HttpServer(const Sources& sources)
  : sources_(sources)
  , listeners_(kMostListeners)
  , server_(kThreads) {
    configure(server_);
    server_.set_pre_routing_handler([this](const auto& request, auto& response) {
        using Decision = httplib::Server::HandlerResponse;
        return refuses(request, response) ? Decision::Handled : Decision::Unhandled;
    });
    addFiles();
    addStreams();
    addPages();
    addCommands();
}

HttpServer::~HttpServer() {
    server_.stop();
    if (thread_.joinable()) {
        thread_.join();
    }
}

int HttpServer::bind(const std::string& address, int port) {
    const bool bound = port == 0 ? (port = server_.bind_to_any_port(address)) > 0
                                 : server_.bind_to_port(address, port);
    if (!bound) {
        throw host::Failure(host::kUsage, "The server cannot listen at " + address +
                                              "; choose a free --port, or an address of this "
                                              "machine for --listen.");
    }
    return port;
}

void HttpServer::start(const AccessRules& rules) {
    rules_ = rules;
    thread_ = std::thread([this] {
        server_.listen_after_bind();
        ended_ = true;
    });
    // A stop before it runs would be lost.
    while (!server_.is_running() && !ended_) {
        std::this_thread::yield();
    }
}

bool HttpServer::refuses(const httplib::Request& request, httplib::Response& response) const {
    if (const auto refusal = refusalOf(rules_, request, kLongestBody)) {
        answerError(response, refusal->status, refusal->reason);
        return true;
    }
    return false;
}

void HttpServer::addFiles() {
    for (const PageFile& file : pageFiles()) {
        const bool start = file.path == "/";
        std::string pattern;
        for (const char c : file.path) {
            pattern += c == '.' ? "\\." : std::string(1, c);
        }
        server_.Get(pattern, [this, &file, start](const auto&, auto& response) {
            if (start) {
                response.set_header("Set-Cookie", cookieName(rules_.port) + "=" + rules_.token +
                                                      "; Path=/; HttpOnly; SameSite=Strict");
            }
            response.set_content(file.content.data(), file.content.size(), std::string(file.type));
        });
    }
}

void HttpServer::addStreams() {
    server_.Get("/preview", [this](const auto& request, auto& response) {
        streamPreview(response, sources_.pictures, sources_.viewers, request.has_param("raw"));
    });
    server_.Get("/events", [this](const auto&, auto& response) {
        streamEvents(response, sources_.events, listeners_);
    });
    server_.Get("/api/state", [this](const auto&, auto& response) {
        response.set_content(stateOf(sources_.events, sources_.viewers, listeners_),
                             "application/json");
    });
}

void HttpServer::addPages() {
    server_.Get(R"(/pages/(\d{1,9})\.jpg)", [this](const auto& request, auto& response) {
        answerPage(response, sources_.pages, std::stoi(request.matches[1].str()));
    });
    server_.Get(R"(/pages/(\d{1,9})/thumbnail\.jpg)", [this](const auto& request, auto& response) {
        answerThumbnail(response, sources_.pages, std::stoi(request.matches[1].str()));
    });
    server_.Get(R"(/pages\.pdf)", [this](const auto&, auto& response) {
        answerDocument(response, sources_.documents.make());
    });
}

void HttpServer::addCommands() {
    server_.Post(R"(/api/([a-z/]{1,40}))", [this](const auto& request, auto& response) {
        const std::string name = request.matches[1].str();
        if (!Commands::knows(name)) {
            answerError(response, 404, "there is no such command");
            return;
        }
        const Json wish = parseBody(request.body);
        const Json answer = sources_.queue.order([&] { return sources_.commands.run(name, wish); });
        response.set_content(answer.dump(), "application/json");
    });
}

} // namespace doccam::serve
