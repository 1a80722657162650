// The first line and the headers of a request, taken apart.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace doccam::serve {

struct RequestHead {
    std::string method; // capital letters
    std::string target; // as it came: a path, and what follows a question mark
    std::vector<std::pair<std::string, std::string>> headers; // names in small letters

    // A header's value; of several the first, and the empty text without one. Names in small
    // letters.
    std::string_view header(std::string_view name) const;
    std::size_t count(std::string_view name) const;

    std::string_view path() const;
    // The value of NAME=VALUE in the target as it came, or the empty text.
    std::string_view query(std::string_view name) const;
};

// The length of a head at the beginning of bytes with its last, empty line; none while it is not
// whole.
std::optional<std::size_t> headLength(std::string_view bytes);

// Whether bytes can be the beginning of a head, as a handshake of TLS cannot.
bool canBeHead(std::string_view bytes);

// Takes a whole head apart; none when it is not HTTP/1.0 or HTTP/1.1 to the letter.
std::optional<RequestHead> parseHead(std::string_view head);

// A head of only those headers that say how the request's body is to be read. What a library might
// stumble over, above all Range, is not in it.
std::string plainHead(const RequestHead& head);

} // namespace doccam::serve
