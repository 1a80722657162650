#include "doctor/model_table.h"

#include "built_in_models.h"
#include "host/failure.h"
#include "host/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <utility>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

std::string errorOf(const ParsedModels& read) {
    return read.error.empty()    ? ""
           : read.errorLine == 0 ? "it is no readable table"
                                 : "line " + std::to_string(read.errorLine) +
                                       (read.tooMany ? " is a tenth row" : " is no row vvvv:pppp");
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

void writeTable(const ModelTable& table, const std::string& text) {
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

std::optional<std::string> withRow(const std::string& text, const std::string& row) {
    if (parseModels(text).models.size() >= kModelRows) {
        return std::nullopt;
    }
    const bool ended = text.empty() || text.back() == '\n';
    return text + (ended ? "" : "\n") + row + "\n";
}

std::string withoutLastRow(const std::string& text) {
    const ParsedModels parsed = parseModels(text);
    return parsed.models.empty() ? text : std::string(text).insert(parsed.lastRow, "# ");
}

ModelTable tableInForce() {
    ModelTable table;
    table.file = configuredModelFile();
    table.addTo = table.file.empty() ? kSystemModelFile : table.file;
    table.text = kBuiltInModels;
    if (table.file.empty()) {
        return table;
    }
    ParsedModels read = readModels(table.file);
    table.error = errorOf(read);
    if (table.error.empty()) {
        table.text = std::move(read.text);
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
        writeTable(table, *text);
        return "";
    }
    if (!replaces) {
        throw Failure(kFileFailed, "The table " + table.file +
                                       " has nine rows already, which is the most; take one out "
                                       "first.");
    }
    writeTable(table, withRow(withoutLastRow(table.text), row).value());
    return textOf(parseModels(table.text).models.back());
}

} // namespace doccam::host
