#include "doctor/model_table.h"

#include "built_in_models.h"
#include "host/failure.h"
#include "host/output_file.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostRows = 9;
constexpr const char* kSystemTable = "/etc/doccam/supported_models.txt";
constexpr std::string_view kIdPattern = "hhhh:hhhh";

std::string_view withoutRemark(std::string_view line) {
    const std::string_view row = line.substr(0, line.find('#'));
    const auto first = row.find_first_not_of(" \t\r");
    return first == std::string_view::npos
               ? std::string_view()
               : row.substr(first, row.find_last_not_of(" \t\r") - first + 1);
}

bool isRow(std::string_view text) {
    return std::equal(text.begin(), text.end(), kIdPattern.begin(), kIdPattern.end(),
                      [](char letter, char pattern) {
                          return pattern == ':'
                                     ? letter == ':'
                                     : std::string_view("0123456789abcdef").find(letter) !=
                                           std::string_view::npos;
                      });
}

std::optional<std::string> contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || !fs::is_regular_file(path) || !(text << file.rdbuf())) {
        return std::nullopt;
    }
    return text.str();
}

// The file that replaces the built-in table, and whether it must be there.
std::string namedFile() {
    const char* named = std::getenv("DOCCAM_MODELS");
    return named != nullptr ? named : "";
}

} // namespace

ModelRows parseModelRows(std::string_view text) {
    ModelRows parsed;
    for (int line = 1; !text.empty(); ++line) {
        const auto end = std::min(text.find('\n'), text.size());
        const std::string_view row = withoutRemark(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (row.empty()) {
            continue;
        }
        if (!isRow(row) || parsed.rows.size() == kMostRows) {
            return {{},
                    "line " + std::to_string(line) +
                        (isRow(row) ? " is a tenth row" : " is no row vvvv:pppp")};
        }
        parsed.rows.emplace_back(row);
    }
    return parsed;
}

std::optional<std::string> withRow(const std::string& text, const std::string& row) {
    if (parseModelRows(text).rows.size() >= kMostRows) {
        return std::nullopt;
    }
    const bool ended = text.empty() || text.back() == '\n';
    return text + (ended ? "" : "\n") + row + "\n";
}

std::string withoutLastRow(const std::string& text) {
    std::size_t last = std::string::npos;
    for (std::size_t start = 0; start < text.size();) {
        const auto end = std::min(text.find('\n', start), text.size());
        if (!withoutRemark(std::string_view(text).substr(start, end - start)).empty()) {
            last = start;
        }
        start = end + 1;
    }
    return last == std::string::npos ? text : std::string(text).insert(last, "# ");
}

ModelTable tableInForce() {
    ModelTable table;
    std::error_code ignored;
    table.file = namedFile();
    if (table.file.empty() && fs::exists(kSystemTable, ignored)) {
        table.file = kSystemTable;
    }
    table.addTo = table.file.empty() ? kSystemTable : table.file;
    table.text = kBuiltInModels;
    if (table.file.empty()) {
        return table;
    }
    const auto text = contentOf(table.file);
    table.error = text ? parseModelRows(*text).error : "it cannot be read";
    if (table.error.empty()) {
        table.text = *text;
    }
    return table;
}

void addRow(const ModelTable& table, const std::string& row) {
    const bool replaces = table.file.empty() || !fs::exists(table.file);
    if (!replaces && !table.error.empty()) {
        throw Failure(kFileFailed, "Nothing was added to " + table.file + ", as " + table.error +
                                       "; correct it first.");
    }
    auto text = withRow(table.text, row);
    if (!text && replaces) {
        text = withRow(withoutLastRow(table.text), row);
    }
    if (!text) {
        throw Failure(kFileFailed, "The table " + table.file +
                                       " has nine rows already, which is the most; take one out "
                                       "first.");
    }
    std::error_code ignored;
    fs::create_directories(fs::path(table.addTo).parent_path(), ignored);
    OutputFile file(table.addTo, true);
    const std::string draft = file.draft();
    if (!(std::ofstream(draft, std::ios::binary) << *text << std::flush)) {
        throw Failure(kFileFailed,
                      table.addTo + " could not be written; look whether the disk is full.");
    }
    fs::permissions(draft, fs::perms(0644), ignored);
    file.publish(draft);
}

} // namespace doccam::host
