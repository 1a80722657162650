#include "streams/input_file.h"

#include "base/files/file_placement.h"
#include "base/unique_fd.h"
#include "host/failure.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

namespace doccam::host {

void requireInputFile(const std::string& path) {
    const UniqueFd file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    const int error = errno;
    if (!file.isOpen() && (error == ENOENT || error == ENOTDIR)) {
        throw Failure(kUsage, "There is no file " + path + ".");
    }
    if (!file.isOpen()) {
        throw Failure(kUsage,
                      "The file " + path + " cannot be read: " + std::strerror(error) + ".");
    }
    const auto status = statusOf(file.get());
    if (status && S_ISDIR(status->st_mode)) {
        throw Failure(kUsage, path + " is a folder; name a file in it.");
    }
    if (!status || !S_ISREG(status->st_mode)) {
        throw Failure(kUsage, path + " is no regular file; name a file, or give - for standard "
                                     "input.");
    }
}

} // namespace doccam::host
