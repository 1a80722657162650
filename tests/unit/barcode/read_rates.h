// How many codes of each kind are read under which difficulty.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace doccam::test {

struct Code;
struct View;

// A kind of code, with a sample of it for each number.
struct Kind {
    std::string name;
    std::function<Code(int sample)> make;
    bool isQr;
};

const std::vector<Kind>& kinds();

// A way in which codes are hard to read, from mild to severe with the number of the sample.
struct Difficulty {
    std::string name;
    std::function<View(int sample)> view;
    int samples;
    bool withOther = false; // a code of the other sort stands in the same picture
};

const std::vector<Difficulty>& difficulties();

// Samples read through the live cascade, and from a file.
struct Rate {
    int frames = 0;
    int files = 0;
};

struct Rates {
    std::string kind;
    std::vector<Rate> cells; // one a difficulty
    int wrong = 0;           // readings that yielded another text
};

Rates measure(const Kind& kind);

// The table in Markdown: its two heading lines, and one line for a kind.
std::string heading();
std::string toRow(const Rates& rates);

// The rates that a line of the table holds; cells is empty for any other line.
Rates fromRow(const std::string& line);

} // namespace doccam::test
