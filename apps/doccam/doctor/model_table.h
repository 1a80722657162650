// The file of supported models: its rows, and adding one.
#pragma once

#include "doctor/findings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace doccam::host {

struct ModelRows {
    std::vector<std::string> rows; // "vvvv:pppp"
    std::string error;             // names the line; no row counts then
};

// Reads rows "vvvv:pppp  # remark" as the library does: nine at most, lower-case digits.
ModelRows parseModelRows(std::string_view text);

// The text with one row more at its end; none when it has nine rows already.
std::optional<std::string> withRow(const std::string& text, const std::string& row);

// The text with its last row made a remark.
std::string withoutLastRow(const std::string& text);

// The table that the library reads in this process.
ModelTable tableInForce();

// Adds the row to the file that the library reads, which is made from the built-in table if there
// is none; its last row may then have to make room, and is returned, else nothing. Throws Failure
// when the file is full or cannot be written.
std::string addRow(const ModelTable& table, const std::string& row);

} // namespace doccam::host
