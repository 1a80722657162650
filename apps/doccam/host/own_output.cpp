#include "host/own_output.h"

#include "base/files/harmless_text.h"
#include "host/failure.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace doccam::host {
namespace {

std::FILE* ownOut = stdout;
std::FILE* ownErr = stderr;
bool resultsAreDropped = false;
bool passingLine = false;

[[noreturn]] void failToSetApart() {
    throw Failure(kFileFailed, "Standard output cannot be set apart for the results; close other "
                               "programs and try again.");
}

std::string complaint(const std::string& message) {
    std::string line = message;
    std::replace_if(
        line.begin(), line.end(), [](char letter) { return letter == '\n' || letter == '\t'; },
        ' ');
    return "doccam: " + harmlessText(line) + "\n";
}

// A stream on a duplicate of descriptor.
std::FILE* keep(int descriptor) {
    const int kept = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    std::FILE* stream = kept < 0 ? nullptr : fdopen(kept, "w");
    if (stream == nullptr) {
        failToSetApart();
    }
    return stream;
}

void redirect(int descriptor, int target) {
    if (target < 0 || dup2(target, descriptor) < 0) {
        failToSetApart();
    }
}

void redraw(const std::string& line) {
    std::fprintf(ownErr, "\r\033[K%s", line.c_str());
    std::fflush(ownErr);
}

void clearPassingLine() {
    if (passingLine) {
        showPassingLine("");
    }
}

} // namespace

void holdStandardStreams() {
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) {
        descriptor = open("/dev/null", O_RDWR);
    }
    if (descriptor >= 0) {
        close(descriptor);
    }
}

void divertLibraryLines(bool verbose) {
    std::fflush(stdout);
    ownErr = keep(STDERR_FILENO);
    setvbuf(ownErr, nullptr, _IOLBF, 0);
    ownOut = keep(STDOUT_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    redirect(STDOUT_FILENO, verbose ? STDERR_FILENO : nowhere);
    // zbar prints warnings there; a sanitizer's report must be visible.
    if (!verbose && !DOCCAM_SANITIZED) {
        redirect(STDERR_FILENO, nowhere);
    }
    close(nowhere);
}

std::FILE* out() {
    return ownOut;
}

void complain(const std::string& message) {
    clearPassingLine();
    std::fputs(complaint(message).c_str(), ownErr);
}

// Past the stream, whose lock may be with a thread that waits for the reader.
void complainWithoutWaiting(const std::string& message) {
    const std::string line = complaint(message);
    pollfd writable{fileno(ownErr), POLLOUT, 0};
    if (line.size() <= PIPE_BUF && poll(&writable, 1, 0) == 1) {
        static_cast<void>(write(writable.fd, line.data(), line.size()) < 0);
    }
}

void dropResults() {
    resultsAreDropped = true;
}

bool errorsAreOnTerminal() {
    return isatty(fileno(ownErr)) == 1;
}

void showPassingLine(const std::string& line) {
    redraw(line);
    passingLine = !line.empty();
}

void printLine(const std::string& line) {
    if (resultsAreDropped) {
        return;
    }
    clearPassingLine();
    const std::string text = isatty(fileno(ownOut)) == 1 ? harmlessText(line, "\n\t") : line;
    std::fwrite(text.data(), 1, text.size(), ownOut);
    std::fputc('\n', ownOut);
}

void printJson(const Json& value) {
    printLine(value.dump(2, ' ', false, Json::error_handler_t::replace));
}

std::string oneLineOf(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void finishOutput() {
    if (std::fflush(ownOut) != 0 || std::ferror(ownOut) != 0) {
        throw Failure(kFileFailed, "Standard output could not be written; look whether its reader "
                                   "has ended or its disk is full.");
    }
}

Result::Result(bool json, Json initial)
  : value(std::move(initial))
  , json_(json) {}

Result::~Result() {
    if (json_) {
        printJson(value);
        std::fflush(out());
    }
}

void Result::add(const Json& row, const std::string& line) {
    value.push_back(row);
    tell(line);
}

void Result::tell(const std::string& line) const {
    if (!json_) {
        printLine(line);
        std::fflush(out());
    }
}

ProgressLine::ProgressLine()
  : terminal_(errorsAreOnTerminal()) {}

ProgressLine::~ProgressLine() {
    if (open_) {
        std::fputc('\n', ownErr);
    }
}

void ProgressLine::show(const std::string& text) {
    if (terminal_) {
        redraw(text);
    } else {
        std::fprintf(ownErr, "%s\n", text.c_str());
        std::fflush(ownErr);
    }
    open_ = terminal_;
}

} // namespace doccam::host
