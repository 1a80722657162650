#include "base/files/model_table.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace doccam {
namespace {

constexpr std::size_t kIdDigits = 4;
constexpr std::uintmax_t kLargestFile = 65536;

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
    ParsedModels parsed;
    parsed.errorLine = line;
    parsed.error = std::move(why);
    return parsed;
}

} // namespace

std::string textOf(const ModelId& model) {
    return std::string(model.vendor.data()) + ":" + model.product.data();
}

ParsedModels parseModels(std::string_view text) {
    ParsedModels parsed;
    int line = 0;
    for (std::size_t start = 0, next = 0; start < text.size(); start = next) {
        ++line;
        const std::string_view whole = text.substr(start, text.find('\n', start) - start);
        next = start + whole.size() + 1;
        const std::string_view row = trimmed(whole.substr(0, whole.find('#')));
        if (row.empty()) {
            continue;
        }
        ModelId model;
        if (!parseRow(row, model)) {
            return failed(line, "expected vvvv:pppp, four lower-case hexadecimal digits each");
        }
        if (parsed.models.size() == kModelRows) {
            parsed = failed(line, "more than nine rows");
            parsed.tooMany = true;
            return parsed;
        }
        parsed.models.push_back(model);
        parsed.lastRow = start;
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
    std::string text{std::istreambuf_iterator<char>(file), {}};
    ParsedModels parsed = parseModels(text);
    parsed.text = std::move(text);
    if (!parsed.error.empty()) {
        parsed.error = path + ":" + std::to_string(parsed.errorLine) + ": " + parsed.error;
    }
    return parsed;
}

std::string configuredModelFile() {
    if (const char* named = secure_getenv("DOCCAM_MODELS"); named != nullptr && *named != '\0') {
        return named;
    }
    std::error_code ignored;
    return std::filesystem::exists(kSystemModelFile, ignored) ? kSystemModelFile : "";
}

} // namespace doccam
