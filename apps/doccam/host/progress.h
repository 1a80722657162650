// Progress of work that takes long.
#pragma once

#include "host/context.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>

namespace doccam::host {

// One line on standard error, redrawn, from a second on and until the object ends. Only on a
// terminal, and neither with --json nor with --quiet. A child process may show the steps.
class Progress {
  public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds kPatience{1000};

    // "cleaning 3 of 12"
    Progress(const GlobalOptions& options, std::string work, std::size_t total,
             std::chrono::milliseconds patience = kPatience);

    // "waiting", without steps
    Progress(const GlobalOptions& options, std::string work)
      : Progress(options, std::move(work), 0) {}

    ~Progress() { hide(); }

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // The number of what is being worked on, from 1.
    void show(std::size_t number) const;

    // The work without its steps.
    void show() const;

    // Before other lines.
    void hide() const;

  private:
    bool isDue() const { return shown_ && Clock::now() >= start_; }

    const bool shown_;
    const std::string work_;
    const std::size_t total_;
    const Clock::time_point start_;
};

} // namespace doccam::host
