#include "doctor/model_table.h"

#include "built_in_models.h"
#include "host/failure.h"
#include "host/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumRows = 9;
constexpr const char* kSystemTable = "/etc/doccam/supported_models.txt";
constexpr std::uintmax_t kLargestFile = 65536;
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

// None if the library would not read it either.
std::optional<std::string> contentOf(const std::string& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error) || fs::file_size(path, error) > kLargestFile) {
        return std::nullopt; // opening a pipe would wait for its writer
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string{std::istreambuf_iterator<char>(file), {}};
}

// The file named by the environment, which must exist; empty if none is named.
std::string namedFile() {
    const char* named = secure_getenv("DOCCAM_MODELS");
    return named != nullptr ? named : "";
}

void makeFolder(const ModelTable& table) {
    const fs::path folder = fs::absolute(table.addTo).parent_path();
    std::error_code error;
    fs::create_directories(folder, error);
    if (error == std::errc::permission_denied ||
        (faccessat(AT_FDCWD, folder.c_str(), W_OK, AT_EACCESS) != 0 && errno == EACCES)) {
        throw Failure(kFileFailed, "Nothing was added to " + table.addTo +
                                       ", which you may not change; run the command with sudo.");
    }
}

void write(const ModelTable& table, const std::string& text) {
    makeFolder(table);
    OutputFile file(table.addTo, true);
    const std::string draft = file.draft();
    if (!(std::ofstream(draft, std::ios::binary) << text << std::flush)) {
        file.failForLackOfSpace();
    }
    std::error_code ignored;
    fs::permissions(draft, fs::perms(0644), ignored);
    file.publish(draft);
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
        if (!isRow(row) || parsed.rows.size() == kMaximumRows) {
            return {{},
                    "line " + std::to_string(line) +
                        (isRow(row) ? " is a tenth row" : " is no row vvvv:pppp")};
        }
        parsed.rows.emplace_back(row);
    }
    return parsed;
}

std::optional<std::string> withRow(const std::string& text, const std::string& row) {
    if (parseModelRows(text).rows.size() >= kMaximumRows) {
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
    table.error = text ? parseModelRows(*text).error : "it is no readable table";
    if (table.error.empty()) {
        table.text = *text;
    }
    return table;
}

std::string addRow(const ModelTable& table, const std::string& row) {
    std::error_code ignored;
    const bool replaces = table.file.empty() || !fs::exists(table.file, ignored);
    if (!replaces && !table.error.empty()) {
        throw Failure(kFileFailed, "Nothing was added to " + table.file + ", as " + table.error +
                                       "; correct it first.");
    }
    if (const auto text = withRow(table.text, row)) {
        write(table, *text);
        return "";
    }
    if (!replaces) {
        throw Failure(kFileFailed, "The table " + table.file +
                                       " has nine rows already, which is the most; take one out "
                                       "first.");
    }
    write(table, withRow(withoutLastRow(table.text), row).value());
    return parseModelRows(table.text).rows.back();
}

} // namespace doccam::host
