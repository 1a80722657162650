// One line of the table: the library and a peer computing the same result, or a quantity and its
// limit.
#pragma once

#include "picture.h"

#include <functional>
#include <string>
#include <vector>

namespace doccam::bench {

// Two computations of the same result on one picture, run alternately many times.
struct Contest {
    std::function<void()> ours;
    std::function<void()> peer;
    // Whether the results agree. Called after the first run of each, before any is timed.
    std::function<bool()> same;
    // Untimed preparation before each run of ours and of peer, for work in place. May be empty.
    std::function<void()> beforeOurs = {};
    std::function<void()> beforePeer = {};
    int frames = 1; // frames per run; times and allocations are per frame
};

// Something counted instead of timed, with its limit.
struct Quantity {
    double ours;
    double limit;
    std::string unit;
};

struct Row {
    std::string name;
    std::string peer; // describes the peer or the limit in the table
    double bound;     // the maximum ratio of ours to the peer's; for a quantity whose limit is 0,
                      // its maximum value
    // One of the two. Times are summed over all pictures, quantities are those of the worst one.
    std::function<Contest(const Picture&)> contest = {};
    std::function<Quantity(const Picture&)> quantity = {};
    int rounds = 30; // minimum
};

// Registers a row: one static object in the row's file.
struct Entry {
    explicit Entry(Row row);
};

// All rows, each kind sorted by name. Quantities come first, since timed work leaves memory behind.
const std::vector<Row>& rows();

bool samePixels(const cv::Mat& left, const cv::Mat& right);

} // namespace doccam::bench
