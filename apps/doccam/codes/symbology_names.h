// Symbologies and groups of them, by the names that users and programs know them by.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace doccam::host {

// "qr", "bar" or "matrix": every symbology is of one kind.
const char* kindOf(int symbology);

// The library's name in lower case, with hyphens, as "ean-13".
std::string nameOf(int symbology);

// The kinds, "any", then all symbologies.
std::vector<std::string> symbologyNames();

// The set that a list of such names means, separated by commas; none if one is unknown. Capitals,
// blanks and hyphens make no difference.
std::optional<unsigned> symbologiesIn(std::string_view list);

} // namespace doccam::host
