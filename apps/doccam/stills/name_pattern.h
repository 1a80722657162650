// File names with a number, the date and the time in them.
#pragma once

#include <ctime>
#include <string>
#include <vector>

namespace doccam::host {

// The pattern of that name alone.
std::string literalPattern(const std::string& name);

// Of a name with at most one %d, or %03d for at least three digits, %% for %, and any number of
// {date} (2026-11-22) and {time} (14-05-09).
class NamePattern {
  public:
    // Throws Failure for any other use of %.
    explicit NamePattern(const std::string& text);

    bool hasNumber() const { return hasNumber_; }

    // Whether names differ at all.
    bool varies() const { return varies_; }

    // The name for a number, and for a point of local time.
    std::string name(int number, const std::tm& time) const;

  private:
    enum class Kind { kText, kNumber, kDate, kTime };

    struct Piece {
        Kind kind = Kind::kText;
        std::string text;
    };

    void addPercent(const std::string& text, std::size_t& at);

    std::vector<Piece> pieces_;
    std::size_t width_ = 1;
    bool hasNumber_ = false;
    bool varies_ = false;
};

} // namespace doccam::host
