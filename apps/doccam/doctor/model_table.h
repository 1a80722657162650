// Extending the file of supported models.
#pragma once

#include "base/files/model_table.h"
#include "doctor/findings.h"

#include <optional>
#include <string>

namespace doccam::host {

// The text with one more row at its end; none if it already has nine.
std::optional<std::string> withRow(const std::string& text, const std::string& row);

// The text with its last row commented out.
std::string withoutLastRow(const std::string& text);

// The table that the library uses in this process.
ModelTable tableInForce();

// Adds the row to the file that the library reads. If there is none, it is made from the built-in
// table, whose last row is dropped if necessary. Returns the dropped row or an empty text. Throws
// Failure if the file is full or cannot be written.
std::string addRow(const ModelTable& table, const std::string& row);

} // namespace doccam::host
