// Complete responses as bytes, for requests answered without a handler.
#pragma once

#include "serve/http/request_head.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace doccam::serve {

using HeaderList = std::vector<std::pair<std::string, std::string>>;

// Headers of every response: no caching, sniffing, framing or reading by other sites.
const HeaderList& safeHeaders();

// {"error": reason}
std::string errorBody(const std::string& reason);

struct PlainAnswer {
    int status = 200;
    std::string_view type;
    std::string_view body;
    bool withBody = true; // false answers HEAD
};

// The bytes of a response after which the connection is closed.
std::string bytesOf(const PlainAnswer& answer);

// Why a request is not processed any further; reason says what to do, without markup.
struct Refusal {
    int status;
    std::string reason;
};

// The refusal of malformed HTTP.
Refusal notUnderstood();

// A small response: JSON for programs, a page for people who opened an address in a browser.
std::string refusalBytes(const Refusal& refusal, const RequestHead& head);

} // namespace doccam::serve
