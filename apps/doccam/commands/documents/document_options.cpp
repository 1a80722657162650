#include "commands/documents/document_options.h"

#include <algorithm>
#include <cctype>
#include <ctime>
#include <optional>

namespace doccam::host {
namespace {

// Noon, local time, so that it is that day in most others, too.
std::optional<std::time_t> parseDay(const std::string& text) {
    constexpr int kNoon = 12;
    constexpr std::size_t kLength = 10;
    std::tm day{};
    const char* const end = strptime(text.c_str(), "%Y-%m-%d", &day);
    if (end == nullptr || *end != '\0' || text.size() != kLength || day.tm_year < 0) {
        return std::nullopt;
    }
    day.tm_hour = kNoon;
    day.tm_isdst = -1;
    const std::tm asked = day;
    const std::time_t time = std::mktime(&day);
    return day.tm_mday == asked.tm_mday ? std::optional(time) : std::nullopt;
}

std::string refuseOddDay(const std::string& text) {
    return parseDay(text) ? "" : "\"" + text + "\" is no day; write it as 2026-11-23";
}

// https://www.rfc-editor.org/info/bcp47: letters and digits in parts of 8 at most
std::string refuseOddLanguage(const std::string& text) {
    constexpr std::size_t kLongest = 8;
    std::size_t length = 0;
    bool isTag = text.size() > 1 && std::isalpha(static_cast<unsigned char>(text[0])) != 0;
    for (const char letter : text + "-") {
        const bool isEnd = letter == '-';
        isTag = isTag && (isEnd ? length > 0 && length <= kLongest
                                : std::isalnum(static_cast<unsigned char>(letter)) != 0);
        length = isEnd ? 0 : length + 1;
    }
    return isTag ? "" : "\"" + text + "\" is no language; write it as en or de-CH";
}

} // namespace

void addDocumentOptions(CLI::App& command, DocumentOptions& options) {
    command
        .add_option("--ocr", options.text.languages,
                    "Recognize the words with tesseract, in these languages: eng, eng+deu")
        ->type_name("LANGUAGES");
    command.add_flag("--upright", options.text.upright, "Turn pages by how their print stands");
    command.add_flag("--compact", options.compact,
                     "Small files: print sharp and of few colours, the rest coarse");
    command.add_option("--title", options.title, "The document's title")->type_name("TEXT");
    command.add_option("--author", options.author, "Its author")->type_name("TEXT");
    command.add_option("--language", options.language, "Its language: en, de-CH")
        ->check(refuseOddLanguage)
        ->type_name("TAG");
    command
        .add_option_function<std::string>(
            "--date", [&options](const std::string& text) { options.date = parseDay(text); },
            "The day it was made; today unless given")
        ->check(refuseOddDay)
        ->type_name("YEAR-MONTH-DAY");
}

std::set<std::string> givenDocumentOptions(const CLI::App& command) {
    std::set<std::string> given;
    for (const char* name :
         {"--ocr", "--upright", "--compact", "--title", "--author", "--language", "--date"}) {
        if (command.count(name) > 0) {
            given.insert(name);
        }
    }
    return given;
}

} // namespace doccam::host
