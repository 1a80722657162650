// The table of camera models that the library looks for.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace doccam {

// Two USB identifiers, four lower-case hexadecimal digits each, zero-terminated.
struct ModelId {
    std::array<char, 5> vendor{};
    std::array<char, 5> product{};

    bool operator==(const ModelId&) const = default;
};

struct ParsedModels {
    std::vector<ModelId> models;
    int errorLine = 0; // 1-based; 0 if the text is well formed
    std::string error;
};

// Parses rows "vvvv:pppp  # remark". Skips blank lines and comments. Stops at the first malformed
// row, or at a tenth one, with an error.
ParsedModels parseModels(std::string_view text);

// Reads the table from the file at path. On failure returns no model, and an error naming file and
// line.
ParsedModels readModels(const std::string& path);

} // namespace doccam
