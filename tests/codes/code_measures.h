// The table's pictures, read by all readers.
#pragma once

#include "code_kinds.h"
#include "code_series.h"
#include "code_tally.h"

#include <cstdint>
#include <string>
#include <vector>

namespace doccam::test {

// A picture of the table.
struct CodeTask {
    const CodeKind* kind;
    const CodeSeries* series;
    int sample;
};

struct CodeMeasure {
    CodeCell cell;
    std::array<double, kCodeReaders> seconds{};
    std::string lost; // what the library lacks or has too much of, for people
};

struct MeasureOptions {
    std::uint64_t seed = 1;
    double seconds = 10; // for the library's later passes
    int jobs = 2;
    std::string keep; // a folder for the pictures with complaints, or empty
};

// All pictures of the kinds and series whose names are in the lists; an empty list has all names.
std::vector<CodeTask> codeTasks(const std::vector<std::string>& kinds,
                                const std::vector<std::string>& series);

// In the order of the tasks. Complaints are also written to the standard error output.
std::vector<CodeMeasure> measureCodes(const std::vector<CodeTask>& tasks,
                                      const MeasureOptions& options);

} // namespace doccam::test
