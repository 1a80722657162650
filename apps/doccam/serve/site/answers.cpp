#include "serve/site/answers.h"

#include "host/failure.h"
#include "serve/commands/command_queue.h"
#include "serve/http/plain_answer.h"
#include "serve/live/live_camera.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>

namespace doccam::serve {
namespace {

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
