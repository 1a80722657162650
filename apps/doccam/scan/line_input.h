// Lines that the user types, read without blocking.
#pragma once

#include <sys/types.h>

#include <deque>
#include <optional>
#include <string>

namespace doccam::host {

// Reads standard input. One thread.
class LineInput {
  public:
    LineInput();

    // To wait for; negative once the input has ended, so that poll() ignores it.
    int descriptor() const;

    // Throws HangUp if it has ended because its terminal has gone: that is no request.
    bool ended() const;

    // The next complete line without its newline; none if there is none yet.
    std::optional<std::string> takeLine();

  private:
    void readAvailable();
    bool hasHungUp(ssize_t count, int events) const;

    std::string begun_;
    std::deque<std::string> lines_;
    const bool onTerminal_; // a terminal that has gone is none
    bool ended_ = false;
    bool hungUp_ = false;
};

// What a line asks for.
enum class LineCommand { kTake, kRetake, kDrop, kSave, kNone };

// An empty line takes a page; r, d and q may have blanks around them. Anything else asks for
// nothing, as do blanks alone.
LineCommand commandOf(const std::string& line);

} // namespace doccam::host
