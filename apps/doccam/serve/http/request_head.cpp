#include "serve/http/request_head.h"

#include <algorithm>
#include <array>

namespace doccam::serve {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kLongestMethod = 16;
constexpr std::size_t kMaximumHeaders = 100;

bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

bool isVisible(char c) {
    return c > ' ' && c < '\x7f';
}

bool isNamed(char c) {
    constexpr std::string_view kOthers = "!#$%&'*+-.^_`|~";
    return isCapital(c) || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           kOthers.find(c) != std::string_view::npos;
}

// Values may contain bytes beyond ASCII, but no control characters.
bool isValue(char c) {
    return c == '\t' || (static_cast<unsigned char>(c) >= ' ' && c != '\x7f');
}

bool isAll(std::string_view text, bool (*belongs)(char)) {
    return std::all_of(text.begin(), text.end(), belongs);
}

// Removes and returns the part of text before the separator.
std::optional<std::string_view> cut(std::string_view& text, std::string_view separator) {
    const std::size_t end = text.find(separator);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view piece = text.substr(0, end);
    text.remove_prefix(end + separator.size());
    return piece;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(kBlanks) + 1));
    return text;
}

std::string inSmallLetters(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](char c) { return isCapital(c) ? static_cast<char>(c - 'A' + 'a') : c; });
    return small;
}

bool readFirstLine(std::string_view line, RequestHead& head) {
    const auto method = cut(line, " ");
    const auto target = cut(line, " ");
    if (!method || !target || (line != "HTTP/1.1" && line != "HTTP/1.0")) {
        return false;
    }
    head.method = *method;
    head.target = *target;
    return !method->empty() && method->size() <= kLongestMethod && isAll(*method, isCapital) &&
           target->starts_with('/') && isAll(*target, isVisible);
}

bool readHeader(std::string_view line, RequestHead& head) {
    const auto name = cut(line, ":");
    if (!name || name->empty() || !isAll(*name, isNamed) || !isAll(line, isValue)) {
        return false;
    }
    head.headers.emplace_back(inSmallLetters(*name), trimmed(line));
    return head.headers.size() <= kMaximumHeaders;
}

} // namespace

std::string_view RequestHead::header(std::string_view name) const {
    const auto found = std::find_if(headers.begin(), headers.end(),
                                    [&](const auto& header) { return header.first == name; });
    return found == headers.end() ? std::string_view() : std::string_view(found->second);
}

std::size_t RequestHead::count(std::string_view name) const {
    return static_cast<std::size_t>(std::count_if(
        headers.begin(), headers.end(), [&](const auto& header) { return header.first == name; }));
}

std::string_view RequestHead::path() const {
    return std::string_view(target).substr(0, target.find('?'));
}

std::string_view RequestHead::query(std::string_view name) const {
    std::string_view rest(target);
    rest.remove_prefix(std::min(rest.find('?'), rest.size()));
    while (!rest.empty()) {
        rest.remove_prefix(1); // of '?' or '&'
        std::string_view field = rest.substr(0, rest.find('&'));
        rest.remove_prefix(field.size());
        if (field.starts_with(name) && field.substr(name.size()).starts_with('=')) {
            return field.substr(name.size() + 1);
        }
    }
    return {};
}

std::optional<std::size_t> headLength(std::string_view bytes) {
    constexpr std::string_view kEnd = "\r\n\r\n";
    const std::size_t end = bytes.find(kEnd);
    return end == std::string_view::npos ? std::nullopt : std::optional(end + kEnd.size());
}

bool canBeHead(std::string_view bytes) {
    const std::size_t known = std::min(bytes.find(' '), bytes.size());
    return bytes.empty() ||
           (known > 0 && known <= kLongestMethod && isAll(bytes.substr(0, known), isCapital));
}

std::optional<RequestHead> parseHead(std::string_view head) {
    RequestHead parsed;
    const auto first = cut(head, kLineEnd);
    if (!first || !readFirstLine(*first, parsed)) {
        return std::nullopt;
    }
    for (auto line = cut(head, kLineEnd); line; line = cut(head, kLineEnd)) {
        if (line->empty()) {
            return head.empty() ? std::optional(std::move(parsed)) : std::nullopt;
        }
        if (!readHeader(*line, parsed)) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

std::string plainHead(const RequestHead& head) {
    constexpr std::array<std::string_view, 3> kKept = {"content-length", "content-type", "expect"};
    std::string text = head.method + " " + head.target + " HTTP/1.1\r\n";
    for (const std::string_view name : kKept) {
        if (head.count(name) > 0) {
            text.append(name).append(": ").append(head.header(name)).append(kLineEnd);
        }
    }
    return text.append(kLineEnd);
}

} // namespace doccam::serve
