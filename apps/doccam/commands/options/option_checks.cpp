#include "commands/options/option_checks.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace doccam::host {

OptionCheck oneOf(std::vector<std::string> choices) {
    return [choices = std::move(choices)](const std::string& value) -> std::string {
        if (std::find(choices.begin(), choices.end(), value) != choices.end()) {
            return "";
        }
        std::string all;
        for (const std::string& choice : choices) {
            all += (all.empty() ? "" : ", ") + choice;
        }
        return "\"" + value + "\" is none of " + all;
    };
}

OptionCheck between(int least, int most) {
    return [least, most](const std::string& value) -> std::string {
        double number = 0;
        const char* end = value.data() + value.size();
        const auto [stop, error] = std::from_chars(value.data(), end, number);
        if (error == std::errc() && stop == end && number >= least && number <= most) {
            return "";
        }
        return "\"" + value + "\" is no number from " + std::to_string(least) + " to " +
               std::to_string(most);
    };
}

} // namespace doccam::host
