#include "stills/name_pattern.h"

#include "host/failure.h"

#include <array>
#include <cctype>
#include <string_view>
#include <utility>

namespace doccam::host {
namespace {

constexpr std::string_view kDateMark = "{date}";
constexpr std::string_view kTimeMark = "{time}";

[[noreturn]] void refuse(const std::string& text) {
    throw Failure(kUsage, "The name " + text +
                              " has a % that is no number; write %d or %03d once, and %% for the "
                              "sign.");
}

bool isDigit(char letter) {
    return std::isdigit(static_cast<unsigned char>(letter)) != 0;
}

std::string dateOf(const std::tm& time) {
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &time)};
}

std::string timeOf(const std::tm& time) {
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%H-%M-%S", &time)};
}

} // namespace

std::string literalPattern(const std::string& name) {
    std::string pattern;
    for (const char letter : name) {
        pattern += letter == '%' ? "%%" : std::string(1, letter);
    }
    return pattern;
}

NamePattern::NamePattern(const std::string& text) {
    const std::string_view whole = text;
    std::string plain;
    const auto endPlain = [&] { pieces_.push_back({Kind::kText, std::exchange(plain, "")}); };
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = whole.substr(at);
        if (rest.starts_with("%%")) {
            plain += '%';
            at += 2;
        } else if (rest.front() == '%') {
            endPlain();
            addPercent(text, at);
        } else if (rest.starts_with(kDateMark) || rest.starts_with(kTimeMark)) {
            endPlain();
            pieces_.push_back({rest.starts_with(kDateMark) ? Kind::kDate : Kind::kTime, ""});
            varies_ = true;
            at += kDateMark.size();
        } else {
            plain += text[at++];
        }
    }
    endPlain();
}

// A width of one digit, which zeros fill, may precede the d.
void NamePattern::addPercent(const std::string& text, std::size_t& at) {
    std::size_t next = at + 1;
    next += next < text.size() && text[next] == '0' ? 1 : 0;
    if (next < text.size() && isDigit(text[next]) && text[next] != '0') {
        width_ = static_cast<std::size_t>(text[next++] - '0');
    }
    if (next >= text.size() || text[next] != 'd' || hasNumber_) {
        refuse(text);
    }
    pieces_.push_back({Kind::kNumber, ""});
    hasNumber_ = varies_ = true;
    at = next + 1;
}

std::string NamePattern::name(int number, const std::tm& time) const {
    std::string name;
    for (const Piece& piece : pieces_) {
        std::string text = piece.kind == Kind::kNumber ? std::to_string(number)
                           : piece.kind == Kind::kDate ? dateOf(time)
                           : piece.kind == Kind::kTime ? timeOf(time)
                                                       : piece.text;
        if (piece.kind == Kind::kNumber && text.size() < width_) {
            text.insert(0, width_ - text.size(), '0');
        }
        name += text;
    }
    return name;
}

} // namespace doccam::host
