#include "scan/line_input.h"

#include "host/failure.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace doccam::host {

LineInput::LineInput()
  : onTerminal_(isatty(STDIN_FILENO) == 1) {}

bool LineInput::ended() const {
    if (hungUp_) {
        throw HangUp();
    }
    return ended_;
}

int LineInput::descriptor() const {
    return ended_ ? -1 : STDIN_FILENO;
}

std::optional<std::string> LineInput::takeLine() {
    readAvailable();
    if (lines_.empty()) {
        return std::nullopt;
    }
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    return line;
}

void LineInput::readAvailable() {
    pollfd state{descriptor(), POLLIN, 0};
    while (!ended_ && poll(&state, 1, 0) > 0) {
        std::array<char, 256> chunk{};
        const ssize_t count = read(STDIN_FILENO, chunk.data(), chunk.size());
        ended_ = count <= 0;
        hungUp_ = hasHungUp(count, state.revents);
        for (ssize_t i = 0; i < count; ++i) {
            const char letter = chunk[static_cast<std::size_t>(i)];
            if (letter == '\n') {
                lines_.push_back(std::move(begun_));
                begun_.clear();
            } else {
                begun_ += letter;
            }
        }
    }
}

bool LineInput::hasHungUp(ssize_t count, int events) const {
    return onTerminal_ && ((count < 0 && errno == EIO) || (count <= 0 && (events & POLLHUP) != 0));
}

LineCommand commandOf(const std::string& line) {
    if (line.empty()) {
        return LineCommand::kTake;
    }
    constexpr const char* kBlanks = " \t\r";
    const std::size_t first = line.find_first_not_of(kBlanks);
    if (first == std::string::npos || first != line.find_last_not_of(kBlanks)) {
        return LineCommand::kNone;
    }
    switch (line[first]) {
    case 'r':
        return LineCommand::kRetake;
    case 'd':
        return LineCommand::kDrop;
    case 'q':
        return LineCommand::kSave;
    default:
        return LineCommand::kNone;
    }
}

} // namespace doccam::host
