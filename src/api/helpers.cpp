// The helpers that hosts share with the library.
#include <doccam/doccam.hpp>

#include <sys/select.h>

void Sleep(int ms) {
    timeval wait{.tv_sec = 0, .tv_usec = static_cast<suseconds_t>(ms) * 1000};
    select(0, nullptr, nullptr, nullptr, &wait);
}

std::vector<std::string> split(std::string text, std::string pattern) {
    if (pattern.empty()) {
        return {std::move(text)};
    }
    std::vector<std::string> pieces;
    text += pattern;
    std::size_t start = 0;
    for (std::size_t found = text.find(pattern); found != std::string::npos;
         found = text.find(pattern, start)) {
        pieces.push_back(text.substr(start, found - start));
        start = found + pattern.size();
    }
    return pieces;
}
