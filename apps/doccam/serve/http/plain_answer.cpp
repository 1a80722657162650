#include "serve/http/plain_answer.h"

#include <nlohmann/json.hpp>

#include <map>

namespace doccam::serve {
namespace {

constexpr const char* kContentPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob:; "
    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

std::string_view phraseOf(int status) {
    static const std::map<int, std::string_view> phrases{{200, "OK"},
                                                         {403, "Forbidden"},
                                                         {405, "Method Not Allowed"},
                                                         {411, "Length Required"},
                                                         {413, "Content Too Large"},
                                                         {414, "URI Too Long"},
                                                         {415, "Unsupported Media Type"},
                                                         {431, "Request Header Fields Too Large"},
                                                         {503, "Service Unavailable"}};
    const auto found = phrases.find(status);
    return found != phrases.end() ? found->second
           : status < 500         ? "Bad Request"
                                  : "Internal Server Error";
}

std::string pageOf(const std::string& reason) {
    return "<!doctype html><meta charset=\"utf-8\"><title>doccam</title><h1>Not let in</h1><p>" +
           reason + ".</p>";
}

} // namespace

const HeaderList& safeHeaders() {
    static const HeaderList headers{{"Cache-Control", "no-store"},
                                    {"Content-Security-Policy", kContentPolicy},
                                    {"Cross-Origin-Opener-Policy", "same-origin"},
                                    {"Cross-Origin-Resource-Policy", "same-origin"},
                                    {"Referrer-Policy", "no-referrer"},
                                    {"X-Content-Type-Options", "nosniff"},
                                    {"X-Frame-Options", "DENY"}};
    return headers;
}

std::string errorBody(const std::string& reason) {
    return nlohmann::json{{"error", reason}}.dump(-1, ' ', false,
                                                  nlohmann::json::error_handler_t::replace);
}

std::string bytesOf(const PlainAnswer& answer) {
    std::string bytes = "HTTP/1.1 " + std::to_string(answer.status) + " ";
    bytes.append(phraseOf(answer.status)).append("\r\n");
    const auto add = [&](std::string_view name, std::string_view value) {
        bytes.append(name).append(": ").append(value).append("\r\n");
    };
    for (const auto& [name, value] : safeHeaders()) {
        add(name, value);
    }
    if (answer.status == 503) {
        add("Retry-After", "1");
    }
    add("Connection", "close");
    add("Content-Type", answer.type);
    add("Content-Length", std::to_string(answer.body.size()));
    bytes.append("\r\n");
    return answer.withBody ? bytes.append(answer.body) : bytes;
}

Refusal notUnderstood() {
    return {400, "this is no request that the server understands"};
}

std::string refusalBytes(const Refusal& refusal, const RequestHead& head) {
    const bool person =
        head.method == "GET" && head.header("accept").find("text/html") != std::string_view::npos;
    const std::string body = person ? pageOf(refusal.reason) : errorBody(refusal.reason);
    return bytesOf({refusal.status, person ? "text/html; charset=utf-8" : "application/json", body,
                    head.method != "HEAD"});
}

} // namespace doccam::serve
