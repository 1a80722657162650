// Validating option values.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace doccam::host {

// Returns what is wrong with a value; empty for a valid one.
using OptionCheck = std::function<std::string(const std::string&)>;

OptionCheck oneOf(std::vector<std::string> choices);
OptionCheck between(int least, int most);

} // namespace doccam::host
