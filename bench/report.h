// The results: one table for the reader, and the same as JSON.
#pragma once

#include "allocations.h"

#include <string>
#include <vector>

namespace doccam::bench {

struct Result {
    std::string row, peerName, unit;
    std::string failure;                         // why there are no numbers, or empty
    double ours = 0, peer = 0;                   // minimum of all rounds, summed over the pictures
    double oursProcessor = 0, peerProcessor = 0; // the same in processor time, of all threads
    double bound = 0;
    std::vector<Allocation> allocations; // of one run of ours on the first picture

    double ratio() const { return peer > 0 ? ours / peer : ours; }

    bool passed() const { return failure.empty() && ratio() <= bound; }

    std::size_t allocatedBytes() const;
    std::size_t unwantedAllocations() const; // those that a frame may not make
};

void printTable(const std::vector<Result>& results);

void writeJson(const std::vector<Result>& results, const std::string& path);

} // namespace doccam::bench
