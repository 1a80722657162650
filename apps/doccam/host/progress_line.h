// Progress of a command, on standard error.
#pragma once

#include <string>

namespace doccam::host {

// On a terminal a single line, overwritten; elsewhere one line each.
class ProgressLine {
  public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(const std::string& text);

  private:
    bool terminal_;
    bool open_ = false;
};

} // namespace doccam::host
