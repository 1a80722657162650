#include "host/own_output.h"

#include "host/failure.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace doccam::host {
namespace {

std::FILE* ownOut = stdout;
std::FILE* ownErr = stderr;

[[noreturn]] void failToSetApart() {
    throw Failure(kFileFailed, "Standard output cannot be set apart for the results; close other "
                               "programs and try again.");
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

// The length of the UTF-8 character that text starts with; 0 for control characters and invalid
// UTF-8.
std::size_t harmlessLetter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return std::iscntrl(first) == 0 || first == '\n' || first == '\t' ? 1 : 0;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    const bool whole =
        first >= 0xC2 && first <= 0xF4 && text.size() >= length &&
        std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length),
                    [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; });
    // U+0080 to U+009F are the C1 control characters.
    const bool control = first == 0xC2 && whole && static_cast<unsigned char>(text[1]) < 0xA0;
    return whole && !control ? length : 0;
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

std::FILE* err() {
    return ownErr;
}

void complain(const std::string& message) {
    std::string line = message;
    std::replace_if(
        line.begin(), line.end(), [](char letter) { return letter == '\n' || letter == '\t'; },
        ' ');
    std::fprintf(ownErr, "doccam: %s\n", harmless(line).c_str());
}

std::string harmless(const std::string& text) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        if (const std::size_t length = harmlessLetter(std::string_view(text).substr(at))) {
            shown.append(text, at, length);
            at += length;
        } else {
            const auto code = static_cast<unsigned char>(text[at++]);
            shown += {'\\', 'x', kDigits[code / 16], kDigits[code % 16]};
        }
    }
    return shown;
}

void printLine(const std::string& line) {
    const std::string text = isatty(fileno(ownOut)) == 1 ? harmless(line) : line;
    std::fwrite(text.data(), 1, text.size(), ownOut);
    std::fputc('\n', ownOut);
}

void printJson(const Json& value) {
    printLine(value.dump(2, ' ', false, Json::error_handler_t::replace));
}

void finishOutput() {
    if (std::fflush(ownOut) != 0 || std::ferror(ownOut) != 0) {
        throw Failure(kFileFailed, "Standard output could not be written; look whether its reader "
                                   "has ended or its disk is full.");
    }
}

} // namespace doccam::host
