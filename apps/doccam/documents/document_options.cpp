#include "documents/document_options.h"

namespace doccam::host {

void adopt(DocumentOptions& options, const DocumentOptions& known,
           const std::set<std::string>& given) {
    const auto keep = [&given](const char* name, auto& value, const auto& before) {
        if (!given.contains(name)) {
            value = before;
        }
    };
    keep("--ocr", options.text.languages, known.text.languages);
    keep("--upright", options.text.upright, known.text.upright);
    keep("--compact", options.compact, known.compact);
    keep("--title", options.title, known.title);
    keep("--author", options.author, known.author);
    keep("--language", options.language, known.language);
    keep("--date", options.date, known.date);
}

} // namespace doccam::host
