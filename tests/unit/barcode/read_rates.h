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

// A sample's text, and what is read of it through the live cascade and from a file. From a file, as
// a host sees it: up to the first zero byte, and empty for a null pointer.
struct Reading {
    std::string text, frame, file;

    bool isFrameRight() const { return frame == text; }

    bool isFileRight() const { return file == text.c_str(); }
};

Reading readSample(const Kind& kind, const Difficulty& difficulty, int sample);

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

// Adds to wrong the readings that yielded another text.
Rate measure(const Kind& kind, const Difficulty& difficulty, int& wrong);

Rates measure(const Kind& kind);

// The table in Markdown: its two heading lines, and one line for a kind.
std::string heading();
std::string toRow(const Rates& rates);

} // namespace doccam::test
