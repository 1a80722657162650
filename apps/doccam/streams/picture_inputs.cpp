#include "streams/picture_inputs.h"

#include "host/failure.h"
#include "pictures/picture_limits.h"

#include <poll.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace doccam::host {
namespace {

[[noreturn]] void failToKeep() {
    throw Failure(kFileFailed, std::string("Standard input cannot be kept (") +
                                   std::strerror(errno) + "); give the picture as a file.");
}

void writeAll(int file, const char* bytes, std::size_t length) {
    while (length > 0) {
        const ssize_t count = write(file, bytes, length);
        if (count < 0 && errno != EINTR) {
            failToKeep();
        }
        const auto written = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        bytes += written;
        length -= written;
    }
}

// The bytes that came next; 0 at the end.
std::size_t readSome(std::array<char, 65536>& chunk, const Interrupt& interrupt) {
    std::array<pollfd, 2> events{{{STDIN_FILENO, POLLIN, 0}, {interrupt.descriptor(), POLLIN, 0}}};
    ssize_t count = -1;
    do {
        poll(events.data(), events.size(), -1);
        interrupt.check();
        count = ::read(STDIN_FILENO, chunk.data(), chunk.size());
    } while (count < 0 && (errno == EINTR || errno == EAGAIN));
    if (count < 0) {
        throw Failure(kUsage,
                      std::string("Standard input cannot be read: ") + std::strerror(errno) + ".");
    }
    return static_cast<std::size_t>(count);
}

// A file without a name, which takes no room on a disk.
UniqueFd keptInput(const Interrupt& interrupt) {
    if (isatty(STDIN_FILENO) == 1) {
        throw Failure(kUsage, "Standard input is a terminal; pipe a picture into it, or name a "
                              "file.");
    }
    UniqueFd kept(memfd_create("standard input", MFD_CLOEXEC));
    if (!kept.isOpen()) {
        failToKeep();
    }
    const std::uint64_t limit = pictureLimits().decodingBytes();
    std::array<char, 65536> chunk{};
    std::uint64_t length = 0;
    while (const std::size_t count = readSome(chunk, interrupt)) {
        length += count;
        if (length > limit) {
            throw Failure(kUsage, "Standard input has more than " + std::to_string(limit) +
                                      " bytes; give a smaller picture, or raise "
                                      "DOCCAM_MAX_MEGAPIXELS.");
        }
        writeAll(kept.get(), chunk.data(), count);
    }
    if (length == 0) {
        throw Failure(kUsage, "Standard input is empty; pipe a picture into it.");
    }
    return kept;
}

} // namespace

PictureInputs::PictureInputs(const std::vector<std::string>& files, const Interrupt& interrupt)
  : paths_(files) {
    const auto streams = std::count_if(files.begin(), files.end(), isStandardStream);
    if (streams > 1) {
        throw Failure(kUsage, "Standard input is named twice; give - once.");
    }
    if (streams == 1) {
        input_ = keptInput(interrupt);
        inputPath_ = "/proc/self/fd/" + std::to_string(input_.get());
        std::replace_if(paths_.begin(), paths_.end(), isStandardStream, inputPath_);
    }
}

std::vector<std::string> PictureInputs::files() const {
    std::vector<std::string> files = paths_;
    std::erase(files, inputPath_);
    return files;
}

std::string PictureInputs::nameOf(const std::string& path) const {
    return path == inputPath_ ? "-" : path;
}

} // namespace doccam::host
