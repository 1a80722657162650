// What the values of options may be.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace doccam::host {

// Each says what is wrong with a value, and nothing about a right one.
using OptionCheck = std::function<std::string(const std::string&)>;

OptionCheck oneOf(std::vector<std::string> choices);
OptionCheck between(int least, int most);

} // namespace doccam::host
