// How many codes of each kind are read under each difficulty.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace doccam::test {

struct Code;
struct View;

// A kind of code with its numbered samples.
struct Kind {
    std::string name;
    std::function<Code(int sample)> make;
    bool isQr;
};

const std::vector<Kind>& kinds();

// A way in which codes are hard to read, growing from mild to severe with the sample's number.
struct Difficulty {
    std::string name;
    std::function<View(int sample)> view;
    int samples;
    bool withOther = false; // a code of the other sort is in the same picture
};

const std::vector<Difficulty>& difficulties();

// A sample's text, and what is read through the live cascade and from a file. The latter is what a
// host sees: up to the first zero byte, and empty for a null pointer.
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
    std::vector<Rate> cells; // one per difficulty
    int wrong = 0;           // readings that yielded another text
};

// Adds to wrong the readings that yielded another text.
Rate measure(const Kind& kind, const Difficulty& difficulty, int& wrong);

Rates measure(const Kind& kind);

// The table in Markdown: its two heading lines, and one line per kind.
std::string heading();
std::string toRow(const Rates& rates);

} // namespace doccam::test
