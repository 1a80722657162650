// A whole answer as bytes, for what is answered before a request reaches its handler.
#pragma once

#include "serve/http/request_head.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace doccam::serve {

using HeaderList = std::vector<std::pair<std::string, std::string>>;

// On every answer: not to be stored, guessed at, framed or read by other sites.
const HeaderList& safeHeaders();

// {"error": reason}
std::string errorBody(const std::string& reason);

struct PlainAnswer {
    int status = 200;
    std::string_view type;
    std::string_view body;
    bool withBody = true; // false answers HEAD
};

// The bytes of an answer after which the connection is closed.
std::string bytesOf(const PlainAnswer& answer);

// Why a request is not looked at any further; reason says what to do, without any mark-up.
struct Refusal {
    int status;
    std::string reason;
};

// The refusal of what is no HTTP.
Refusal notUnderstood();

// A small answer: JSON for a program, a page for a person who opened an address in a browser.
std::string refusalBytes(const Refusal& refusal, const RequestHead& head);

} // namespace doccam::serve
