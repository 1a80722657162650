// Lines that the user types, read without blocking.
#pragma once

#include <deque>
#include <optional>
#include <string>

namespace doccam::host {

// Reads standard input. One thread.
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

// What a line asks for.
enum class LineCommand { kTake, kRetake, kDrop, kSave, kNone };

// An empty line takes a page; r, d and q may have blanks around them. Anything else asks for
// nothing, as do blanks alone.
LineCommand commandOf(const std::string& line);

} // namespace doccam::host
