// Parsing the JSON of a page's commands.
#pragma once

#include "camera/cameras.h"
#include "camera/page_settings.h"
#include "pages/recipe.h"

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <vector>

namespace doccam::serve {

using Json = nlohmann::ordered_json;

// The request is invalid; the message names the field and its valid values.
struct BadRequest : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Parses a command's body; an empty body is an empty object. Throws BadRequest.
Json parseBody(const std::string& body);

// The fields of an object. Each throws BadRequest if the field is missing, of another type or out
// of range.
int integer(const Json& object, const char* field, int least, int most);
std::string choice(const Json& object, const char* field, const std::vector<std::string>& choices);
// A text of at most longest bytes.
std::string text(const Json& object, const char* field, std::size_t longest);
std::vector<int> integers(const Json& object, const char* field, std::size_t most);

// The fields "look" and "colour".
host::Look look(const Json& object);
host::Colour colour(const Json& object);
const char* nameOf(host::Look look);

// "left" is a quarter turn counter-clockwise, -1; "right" is 1.
int quarterTurn(const Json& object);

// How pages are made: by the page engine, unless they are cropped to rectangles or whitened, which
// the library's stills are.
struct Settings : host::PageSettings {
    host::Look look = host::Look::kPaper;
    bool rectangle = false; // crop to the smallest rectangle around the largest bright shape

    bool byEngine() const { return !rectangle && !cleanEdges && !cleanBackground; }
};

// settings updated with the fields of object. Throws BadRequest.
Settings changed(Settings settings, const Json& object);
Json toJson(const Settings& settings);

// The form for a page's area, scaled down if it exceeds kLargestForm.
host::Size fittedForm(host::Size wanted);

// The pixels of the largest form.
inline constexpr host::Size kLargestForm{2560, 1600};

} // namespace doccam::serve
