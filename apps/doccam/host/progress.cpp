#include "host/progress.h"

#include "host/own_output.h"

#include <utility>

namespace doccam::host {

Progress::Progress(const GlobalOptions& options, std::string work, std::size_t total,
                   std::chrono::milliseconds patience)
  : shown_(!options.json && !options.quiet && errorsAreOnTerminal())
  , work_(std::move(work))
  , total_(total)
  , start_(Clock::now() + patience) {}

void Progress::show(std::size_t number) const {
    if (isDue()) {
        showPassingLine(work_ + " " + std::to_string(number) + " of " + std::to_string(total_));
    }
}

void Progress::show() const {
    if (isDue()) {
        showPassingLine(work_);
    }
}

// Also what a child process has shown.
void Progress::hide() const {
    if (isDue()) {
        showPassingLine("");
    }
}

} // namespace doccam::host
