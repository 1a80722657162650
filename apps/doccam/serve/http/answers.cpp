#include "serve/http/answers.h"

#include "host/failure.h"
#include "serve/commands/command_queue.h"
#include "serve/live/live_camera.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <memory>

namespace doccam::serve {
namespace {

constexpr std::size_t kLongestTarget = 512;

// Longer bodies are not even read to be thrown away.
constexpr std::uint64_t kLongestSkipped = std::uint64_t{1024} * 1024;

constexpr const char* kContentPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob:; "
    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

Credentials credentialsOf(const httplib::Request& request) {
    Credentials credentials{request.get_header_value("Host"), std::nullopt,
                            request.get_param_value("token"), request.get_header_value("Cookie"),
                            request.get_header_value("Sec-Fetch-Site")};
    if (request.has_header("Origin")) {
        credentials.origin = request.get_header_value("Origin");
    }
    return credentials;
}

bool repeats(const httplib::Request& request, const char* header) {
    return request.get_header_value_count(header) > 1;
}

std::uint64_t announcedBytes(const httplib::Request& request) {
    const std::string text = request.get_header_value("Content-Length");
    std::uint64_t bytes = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bytes);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? bytes : kLongestSkipped + 1;
}

std::optional<Refusal> refusalOfBody(const httplib::Request& request, std::size_t longest) {
    if (request.has_header("Transfer-Encoding") || request.has_header("Content-Encoding") ||
        !request.has_header("Content-Length") || repeats(request, "Content-Length")) {
        return Refusal{411, "a command says its Content-Length and comes as it is"};
    }
    const std::uint64_t bytes = announcedBytes(request);
    if (bytes > longest && bytes > kLongestSkipped) {
        return Refusal{413, "the body is too long"};
    }
    if (!request.get_header_value("Content-Type").starts_with("application/json")) {
        return Refusal{415, "a command is application/json"};
    }
    return std::nullopt;
}

std::optional<Refusal> refusalOfForm(const httplib::Request& request, std::size_t longestBody) {
    if (request.method == "POST") {
        return refusalOfBody(request, longestBody);
    }
    if (request.method != "GET" && request.method != "HEAD") {
        return Refusal{405, "GET and POST are all there is"};
    }
    if (request.has_header("Transfer-Encoding") || request.has_header("Content-Length")) {
        return Refusal{400, "only a command has a body"};
    }
    return std::nullopt;
}

bool sendFile(httplib::Response& response, const std::string& path, const char* type) {
    auto file = std::make_shared<std::ifstream>(path, std::ios::binary);
    std::error_code error;
    const auto bytes = std::filesystem::file_size(path, error);
    if (!*file || error || bytes == 0) {
        return false;
    }
    response.set_content_provider(
        bytes, type, [file](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            std::array<char, std::size_t{64} * 1024> buffer;
            file->seekg(static_cast<std::streamoff>(offset));
            file->read(buffer.data(),
                       static_cast<std::streamsize>(std::min(length, buffer.size())));
            const auto count = static_cast<std::size_t>(file->gcount());
            return count > 0 && sink.write(buffer.data(), count);
        });
    return true;
}

std::size_t placeOf(const PageStore& pages, int id) {
    const std::vector<Page> all = pages.pages();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Page& page) { return page.id == id; });
    return static_cast<std::size_t>(found - all.begin()) + 1;
}

} // namespace

std::optional<Refusal> refusalOf(const AccessRules& rules, const httplib::Request& request,
                                 std::size_t longestBody) {
    if (request.target.size() > kLongestTarget) {
        return Refusal{414, "the address is too long"};
    }
    if (repeats(request, "Host") || repeats(request, "Origin")) {
        return Refusal{400, "a header is repeated"};
    }
    switch (judge(rules, credentialsOf(request))) {
    case Verdict::kForeignHost:
        return Refusal{403,
                       "the server does not go by this name; open the address that it printed"};
    case Verdict::kForeignOrigin:
        return Refusal{403, "another site may not use this server"};
    case Verdict::kNoToken:
        return Refusal{403, "open the address that the server printed: it holds the access token"};
    case Verdict::kAllowed:
        break;
    }
    if (request.has_header("Range")) {
        return Refusal{416, "there are no ranges"};
    }
    return refusalOfForm(request, longestBody);
}

httplib::Headers safeHeaders() {
    return {{"Cache-Control", "no-store"},
            {"Content-Security-Policy", kContentPolicy},
            {"Cross-Origin-Opener-Policy", "same-origin"},
            {"Cross-Origin-Resource-Policy", "same-origin"},
            {"Referrer-Policy", "no-referrer"},
            {"X-Content-Type-Options", "nosniff"},
            {"X-Frame-Options", "DENY"}};
}

void answerError(httplib::Response& response, int status, const std::string& reason) {
    response.status = status;
    response.set_content(
        Json{{"error", reason}}.dump(-1, ' ', false, Json::error_handler_t::replace),
        "application/json");
}

void answerException(const httplib::Request& /*request*/, httplib::Response& response,
                     std::exception_ptr error) {
    try {
        std::rethrow_exception(error);
    } catch (const BadRequest& problem) {
        answerError(response, 400, problem.what());
    } catch (const BadOrder& problem) {
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

void answerPage(httplib::Response& response, const PageStore& pages, int id) {
    const auto path = pages.picture(id);
    if (!path || !sendFile(response, *path, "image/jpeg")) {
        answerError(response, 404, "there is no such page");
        return;
    }
    response.set_header("Content-Disposition",
                        "inline; filename=\"page-" + std::to_string(placeOf(pages, id)) + ".jpg\"");
}

void answerThumbnail(httplib::Response& response, const PageStore& pages, int id) {
    const auto path = pages.thumbnail(id);
    if (!path || !sendFile(response, *path, "image/jpeg")) {
        answerError(response, 404, "there is no such page");
    }
}

void answerDocument(httplib::Response& response, const std::string& path) {
    const bool sent = sendFile(response, path, "application/pdf");
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    if (!sent) {
        answerError(response, 404, "there is no document");
        return;
    }
    response.set_header("Content-Disposition", "attachment; filename=\"pages.pdf\"");
}

} // namespace doccam::serve
