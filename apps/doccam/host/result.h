// What a command has to tell in the end.
#pragma once

#include "host/own_output.h"

#include <string>

namespace doccam::host {

// Prints value as JSON when its life ends, where JSON is wanted: a command that fails half-way has
// still told what it did.
class Result {
  public:
    Result(bool json, Json initial);
    ~Result();
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;

    // Adds to the array that value is, or prints the line at once where no JSON is wanted.
    void add(const Json& row, const std::string& line);

    // Prints the line where no JSON is wanted.
    void tell(const std::string& line) const;

    Json value;

  private:
    bool json_;
};

} // namespace doccam::host
