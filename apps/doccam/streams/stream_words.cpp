#include "streams/stream_words.h"

#include <cctype>

namespace doccam::host {
namespace {

void replace(std::string& text, const std::string& old, const std::string& other) {
    for (std::size_t at = text.find(old); at != std::string::npos;
         at = text.find(old, at + other.size())) {
        text.replace(at, old.size(), other);
    }
}

} // namespace

std::string inStreamWords(std::string sentence, const std::string& path, const std::string& words) {
    if (path.empty()) {
        return sentence;
    }
    std::string first = words;
    first.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(first.front())));
    for (const char* noun : {"The file ", "The picture ", "The name "}) {
        replace(sentence, noun + path, first);
    }
    if (sentence.starts_with(path)) {
        sentence.replace(0, path.size(), first);
    }
    replace(sentence, path, words);
    return sentence;
}

} // namespace doccam::host
