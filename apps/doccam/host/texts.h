// Numbers and lists in texts.
#pragma once

#include <charconv>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace doccam::host {

// The number that makes up all of text; none if there is anything else, or it is out of range.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// What text returns for each element, separated by commas.
template <typename Range, typename Text = std::identity>
std::string listed(const Range& range, Text text = {}) {
    std::string list;
    for (const auto& element : range) {
        list.append(list.empty() ? "" : ", ").append(std::invoke(text, element));
    }
    return list;
}

} // namespace doccam::host
