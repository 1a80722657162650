// What a page may ask for, read from the JSON of a command.
#pragma once

#include "camera/page_settings.h"
#include "camera/picture_format.h"

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <vector>

namespace doccam::serve {

using Json = nlohmann::ordered_json;

// The request does not make sense; the message says which field and what it may be.
struct BadRequest : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The object that a command's body is; an empty body is an empty object. Throws BadRequest.
Json parseBody(const std::string& body);

// The fields of an object; each throws BadRequest when the field is missing, of another type or out
// of range.
int integer(const Json& object, const char* field, int least, int most);
std::string choice(const Json& object, const char* field, const std::vector<std::string>& choices);
// Of at most so many bytes.
std::string text(const Json& object, const char* field, std::size_t longest);
std::vector<int> integers(const Json& object, const char* field, std::size_t most);

// "left" is a quarter turn counter-clockwise, -1; "right" is 1.
int quarterTurn(const Json& object);

// settings with the fields that object has; the rest as they were. Throws BadRequest.
host::PageSettings changed(host::PageSettings settings, const Json& object);
Json toJson(const host::PageSettings& settings);

// The form for a page's area: as large, but no larger than the preview's room allows.
host::Size fittedForm(host::Size wanted);

// The pixels of the largest form.
inline constexpr host::Size kLargestForm{2560, 1600};

} // namespace doccam::serve
