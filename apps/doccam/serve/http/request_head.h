// Parsing the first line and the headers of a request.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace doccam::serve {

struct RequestHead {
    std::string method;                                       // upper case
    std::string target;                                       // unchanged: path and query
    std::vector<std::pair<std::string, std::string>> headers; // names in lower case

    // A header's value; the first of several, empty if there is none. name must be lower case.
    std::string_view header(std::string_view name) const;
    std::size_t count(std::string_view name) const;

    std::string_view path() const;
    // The undecoded value of NAME=VALUE in the query, or an empty text.
    std::string_view query(std::string_view name) const;
};

// The length of the head at the start of bytes, including its empty line; none if it is incomplete.
std::optional<std::size_t> headLength(std::string_view bytes);

// Whether bytes can be the start of a head, unlike a TLS handshake.
bool canBeHead(std::string_view bytes);

// Parses a complete head; none if it is not strictly HTTP/1.0 or HTTP/1.1.
std::optional<RequestHead> parseHead(std::string_view head);

// A head with only those headers needed to read the request's body. Headers that cpp-httplib might
// stumble over, above all Range, are omitted.
std::string plainHead(const RequestHead& head);

} // namespace doccam::serve
