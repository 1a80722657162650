#include "host/result.h"

#include <utility>

namespace doccam::host {

Result::Result(bool json, Json initial)
  : value(std::move(initial))
  , json_(json) {}

Result::~Result() {
    if (json_) {
        printJson(value);
        std::fflush(out());
    }
}

void Result::add(const Json& row, const std::string& line) {
    value.push_back(row);
    tell(line);
}

void Result::tell(const std::string& line) const {
    if (!json_) {
        printLine(line);
        std::fflush(out());
    }
}

} // namespace doccam::host
