#include "host/own_output.h"

#include "host/failure.h"

#include <fcntl.h>
#include <unistd.h>

namespace doccam::host {
namespace {

std::FILE* own = stdout;

} // namespace

void divertLibraryLines(bool verbose) {
    std::fflush(stdout);
    const int kept = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    // Without a standard output there is nothing to keep apart.
    if (kept < 0) {
        return;
    }
    const int target = verbose ? fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)
                               : open("/dev/null", O_WRONLY | O_CLOEXEC);
    std::FILE* stream = fdopen(kept, "w");
    if (target < 0 || stream == nullptr || dup2(target, STDOUT_FILENO) < 0) {
        throw Failure(kFileFailed, "Standard output cannot be set apart for the results; close "
                                   "other programs and try again.");
    }
    close(target);
    own = stream;
}

std::FILE* out() {
    return own;
}

void printLine(const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), own);
    std::fputc('\n', own);
}

void printJson(const Json& value) {
    printLine(value.dump(2, ' ', false, Json::error_handler_t::replace));
}

void finishOutput() {
    if (std::fflush(own) != 0 || std::ferror(own) != 0) {
        throw Failure(kFileFailed, "Standard output could not be written; look whether its reader "
                                   "has ended or its disk is full.");
    }
}

} // namespace doccam::host
