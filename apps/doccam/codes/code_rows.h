// Codes as results: rows of JSON and lines of text.
#pragma once

#include "codes/picture_codes.h"
#include "host/own_output.h"

#include <string>
#include <string_view>

namespace doccam::host {

// {"source", "kind", "symbology", "text", "bytes", "addon", "position"}
Json asJson(const std::string& source, const Code& code);

// "kind: text"
std::string asText(const Code& code);

// Base64 with padding, as RFC 4648 has it.
std::string base64Of(std::string_view bytes);

} // namespace doccam::host
