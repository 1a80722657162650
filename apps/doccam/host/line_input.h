// Lines that the user types, as events.
#pragma once

#include <deque>
#include <optional>
#include <string>

namespace doccam::host {

// Reads standard input without ever waiting for it. One thread.
class LineInput {
  public:
    // What to wait for; negative once the input has ended, so that poll() passes over it.
    int descriptor() const;

    bool ended() const { return ended_; }

    // The next whole line that has been typed, without its end; none for now.
    std::optional<std::string> takeLine();

  private:
    void readAvailable();

    std::string begun_;
    std::deque<std::string> lines_;
    bool ended_ = false;
};

} // namespace doccam::host
