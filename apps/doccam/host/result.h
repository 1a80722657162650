// A command's results.
#pragma once

#include "host/own_output.h"

#include <string>

namespace doccam::host {

// If JSON is requested, prints value on destruction, so that a command that fails half-way still
// reports what it did.
class Result {
  public:
    Result(bool json, Json initial);
    ~Result();
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;

    // Adds row to the array value, or prints the line at once without --json.
    void add(const Json& row, const std::string& line);

    // Prints the line, except with --json.
    void tell(const std::string& line) const;

    Json value;

  private:
    bool json_;
};

} // namespace doccam::host
