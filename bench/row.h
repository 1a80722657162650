// One line of the table: the library's way and a peer's to the same result, or a quantity and its
// limit.
#pragma once

#include "picture.h"

#include <functional>
#include <string>
#include <vector>

namespace doccam::bench {

// Two ways to the same result on one picture. They run in turns, many times.
struct Contest {
    std::function<void()> ours;
    std::function<void()> peer;
    // Asked after the first run of each, before any is timed: whether the results are the same.
    std::function<bool()> same;
    // Untimed, before each run of ours and of peer, for work that changes its input. May be empty.
    std::function<void()> beforeOurs = {};
    std::function<void()> beforePeer = {};
    int frames = 1; // that a run of either handles; times and allocations are those of one
};

// Something counted rather than timed, with what the design needs of it.
struct Quantity {
    double ours;
    double limit;
    std::string unit;
};

struct Row {
    std::string name;
    std::string peer; // what the peer or the limit is, for the reader of the table
    double bound;     // the greatest ratio of ours to the peer's that passes; a count's greatest
                      // value where the limit is 0
    // One of the two. Times are added up over all pictures, quantities are those of the worst one.
    std::function<Contest(const Picture&)> contest = {};
    std::function<Quantity(const Picture&)> quantity = {};
    int rounds = 30; // at least
};

// Enters a row: one static object in the row's file.
struct Entry {
    explicit Entry(Row row);
};

// All rows: quantities first, since timed work leaves memory behind, each kind in the order of its
// names.
const std::vector<Row>& rows();

bool samePixels(const cv::Mat& left, const cv::Mat& right);

} // namespace doccam::bench
