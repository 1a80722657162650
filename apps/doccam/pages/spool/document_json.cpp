#include "pages/spool/document_json.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>

namespace doccam::host {
namespace {

using Json = nlohmann::ordered_json;

} // namespace

Json asJson(const DocumentOptions& options) {
    return {{"ocr", escaped(options.text.languages)},
            {"upright", options.text.upright},
            {"compact", options.compact},
            {"title", escaped(options.title)},
            {"author", escaped(options.author)},
            {"language", escaped(options.language)},
            {"date", options.date ? Json(static_cast<std::int64_t>(*options.date)) : Json()}};
}

DocumentOptions documentOptionsIn(const Json& value) {
    const auto text = [&](const char* name) {
        return unescaped(value.at(name).get<std::string>());
    };
    DocumentOptions options;
    options.text = {.languages = text("ocr"), .upright = value.at("upright").get<bool>()};
    options.compact = value.at("compact").get<bool>();
    options.title = text("title");
    options.author = text("author");
    options.language = text("language");
    if (const Json& date = value.at("date"); !date.is_null()) {
        options.date = static_cast<std::time_t>(date.get<std::int64_t>());
    }
    return options;
}

std::string escaped(const std::string& path) {
    std::string text;
    for (const char letter : path) {
        const auto byte = static_cast<unsigned char>(letter);
        std::array<char, 4> code{};
        std::snprintf(code.data(), code.size(), "%%%02X", byte);
        text += byte < 0x20 || byte > 0x7E || letter == '%' ? std::string(code.data())
                                                            : std::string(1, letter);
    }
    return text;
}

std::string unescaped(const std::string& text) {
    std::string path;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned byte = 0;
        const char* const code = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(code, code + 2, byte, 16).ptr == code + 2) {
            path += static_cast<char>(byte);
            i += 2;
        } else {
            path += text[i];
        }
    }
    return path;
}

} // namespace doccam::host
