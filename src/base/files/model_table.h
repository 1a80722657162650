// The table of camera models: read by the library, and extended by the doctor of the command line.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace doccam {

inline constexpr int kModelRows = 9; // at most

inline constexpr const char* kSystemModelFile = "/etc/doccam/supported_models.txt";

// Two USB identifiers, four lower-case hexadecimal digits each, zero-terminated.
struct ModelId {
    std::array<char, 5> vendor{};
    std::array<char, 5> product{};

    bool operator==(const ModelId&) const = default;
};

// "vvvv:pppp"
std::string textOf(const ModelId& model);

struct ParsedModels {
    std::vector<ModelId> models;
    std::size_t lastRow = 0; // where the last model's line starts in the text
    int errorLine = 0;       // 1-based; 0 if the text is well formed, or could not be read
    bool tooMany = false;    // the error is a tenth row
    std::string error;
    std::string text; // of the file, if it was read
};

// Parses rows "vvvv:pppp  # remark", up to the first malformed row, or a tenth one: an error.
ParsedModels parseModels(std::string_view text);

// Reads the table from the file at path. On failure no model, and an error naming file and line.
ParsedModels readModels(const std::string& path);

// The path of the file that replaces the built-in table; empty if there is none.
std::string configuredModelFile();

} // namespace doccam
