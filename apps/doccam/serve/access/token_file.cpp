#include "serve/access/token_file.h"

#include "base/files/file_placement.h"
#include "base/unique_fd.h"
#include "serve/access/access.h"

#include <fcntl.h>

#include <optional>
#include <system_error>

namespace doccam::serve {
namespace {

namespace fs = std::filesystem;

constexpr const char* kName = "serve-token";
constexpr mode_t kOthers = S_IRWXG | S_IRWXO;

bool isToken(const std::string& text) {
    return text.size() == kTokenDigits &&
           text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

// Whether the folder exists and only this user may enter it.
bool makePrivate(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder.parent_path(), error);
    mkdir(folder.c_str(), S_IRWXU);
    const UniqueFd opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto status = statusOf(opened.get());
    return status && status->st_uid == geteuid() && fchmod(opened.get(), S_IRWXU) == 0;
}

std::optional<std::string> readToken(const fs::path& path) {
    const UniqueFd file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    const auto status = statusOf(file.get());
    if (!status || !S_ISREG(status->st_mode) || status->st_uid != geteuid() ||
        (status->st_mode & kOthers) != 0 || status->st_size != static_cast<off_t>(kTokenDigits)) {
        return std::nullopt;
    }
    std::string text(kTokenDigits, '\0');
    const ssize_t count = read(file.get(), text.data(), text.size());
    return count == static_cast<ssize_t>(text.size()) && isToken(text) ? std::optional(text)
                                                                       : std::nullopt;
}

// Whether path now contains token. An existing file, as from a simultaneous start, is kept.
bool writeToken(const fs::path& path, const std::string& token) {
    std::string draft = path.string() + ".XXXXXX";
    const UniqueFd file(mkostemp(draft.data(), O_CLOEXEC));
    if (!file.isOpen()) {
        return false;
    }
    const bool written =
        fchmod(file.get(), 0600) == 0 &&
        write(file.get(), token.data(), token.size()) == static_cast<ssize_t>(token.size()) &&
        fsync(file.get()) == 0 && link(draft.c_str(), path.c_str()) == 0;
    unlink(draft.c_str());
    return written;
}

} // namespace

std::string keptToken(const fs::path& folder) {
    std::string token = randomToken();
    if (folder.empty() || !makePrivate(folder)) {
        return token;
    }
    const fs::path path = folder / kName;
    if (const auto kept = readToken(path)) {
        return *kept;
    }
    unlink(path.c_str());
    return writeToken(path, token) ? token : readToken(path).value_or(token);
}

} // namespace doccam::serve
