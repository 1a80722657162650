// Non-blocking input of lines typed by the user.
#pragma once

#include <deque>
#include <optional>
#include <string>

namespace doccam::host {

// Reads standard input without blocking. Not thread-safe.
class LineInput {
  public:
    // To wait for; negative once the input has ended, so that poll() ignores it.
    int descriptor() const;

    bool ended() const { return ended_; }

    // The next complete line without its newline; none if there is none yet.
    std::optional<std::string> takeLine();

  private:
    void readAvailable();

    std::string begun_;
    std::deque<std::string> lines_;
    bool ended_ = false;
};

} // namespace doccam::host
