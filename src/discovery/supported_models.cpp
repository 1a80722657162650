#include "discovery/supported_models.h"

#include "base/files/harmless_text.h"
#include "state/library_state.h"
#include "supported_models_text.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace doccam {
namespace {

constexpr std::size_t kIdDigits = 4;
constexpr std::uintmax_t kLargestFile = 65536;
constexpr const char* kSystemTable = "/etc/doccam/supported_models.txt";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool isIdentifier(std::string_view text) {
    return text.size() == kIdDigits &&
           text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

bool parseRow(std::string_view row, ModelId& model) {
    const auto colon = row.find(':');
    if (colon == std::string_view::npos || !isIdentifier(row.substr(0, colon)) ||
        !isIdentifier(row.substr(colon + 1))) {
        return false;
    }
    row.substr(0, colon).copy(model.vendor.data(), kIdDigits);
    row.substr(colon + 1).copy(model.product.data(), kIdDigits);
    return true;
}

ParsedModels failed(int line, std::string why) {
    return {.models = {}, .errorLine = line, .error = std::move(why)};
}

// The path of the file that replaces the built-in table; empty if there is none.
std::string configuredFile() {
    if (const char* named = secure_getenv("DOCCAM_MODELS"); named != nullptr && *named != '\0') {
        return named;
    }
    std::error_code ignored;
    return std::filesystem::exists(kSystemTable, ignored) ? kSystemTable : "";
}

// The table used for the life of the process; gpyVendor and gpyProduct point into it.
const std::vector<ModelId>& configuredModels() {
    static const std::vector<ModelId> models = [] {
        if (const std::string file = configuredFile(); !file.empty()) {
            ParsedModels read = readModels(file);
            if (read.error.empty()) {
                return read.models;
            }
            std::fprintf(stderr, "doccam: %s; using the built-in table\n",
                         harmlessText(read.error).c_str());
        }
        return parseModels(kBuiltInModels).models;
    }();
    return models;
}

[[maybe_unused]] const bool loaded = [] {
    const auto& models = configuredModels();
    for (std::size_t row = 0; row < models.size(); ++row) {
        state().discovery.gpyVendor[row] = models[row].vendor.data();
        state().discovery.gpyProduct[row] = models[row].product.data();
    }
    return true;
}();

} // namespace

ParsedModels parseModels(std::string_view text) {
    ParsedModels parsed;
    int line = 0;
    while (!text.empty()) {
        ++line;
        const auto end = text.find('\n');
        const std::string_view whole = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        const std::string_view row = trimmed(whole.substr(0, whole.find('#')));
        if (row.empty()) {
            continue;
        }
        ModelId model;
        if (!parseRow(row, model)) {
            return failed(line, "expected vvvv:pppp, four lower-case hexadecimal digits each");
        }
        if (parsed.models.size() == kModelRows) {
            return failed(line, "more than nine rows");
        }
        parsed.models.push_back(model);
    }
    return parsed;
}

ParsedModels readModels(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return failed(0, path + ": not a readable file");
    }
    if (std::filesystem::file_size(path, error) > kLargestFile) {
        return failed(0, path + ": too large for a table of models");
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return failed(0, path + ": not a readable file");
    }
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    ParsedModels parsed = parseModels(text);
    if (!parsed.error.empty()) {
        parsed.error = path + ":" + std::to_string(parsed.errorLine) + ": " + parsed.error;
    }
    return parsed;
}

} // namespace doccam
