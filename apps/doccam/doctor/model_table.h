// Extending the file of supported models.
#pragma once

#include "base/files/model_table.h"

#include <optional>
#include <string>

namespace doccam::host {

// The table of supported models that the library reads.
struct ModelTable {
    std::string file; // empty: the built-in table, which addTo would replace
    std::string addTo;
    std::string text;
    std::string error; // why the file cannot be used
};

// The text with one more row at its end; none if it already has nine.
std::optional<std::string> withRow(const std::string& text, const std::string& row);

// The text with its last row commented out.
std::string withoutLastRow(const std::string& text);

// The table that the library uses in this process.
ModelTable tableInForce();

// Adds the row to the library's file, or to a new one made from the built-in table, whose last row
// is then dropped if necessary and returned. Throws Failure if the file is full or cannot be
// written.
std::string addRow(const ModelTable& table, const std::string& row);

} // namespace doccam::host
