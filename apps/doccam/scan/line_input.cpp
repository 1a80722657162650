#include "scan/line_input.h"

#include <poll.h>
#include <unistd.h>

#include <array>

namespace doccam::host {

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
