// Sharing the rows of a picture among the machine's cores.
#pragma once

#include "base/shared_work.h"

#include <opencv2/core/types.hpp>

#include <algorithm>
#include <cstdint>

namespace doccam {

// Parts of nearly equal length, few enough to be cheap and enough to keep the cores busy. Results
// must not depend on their number.
struct Strips {
    explicit Strips(int wholeLength)
      : length(wholeLength)
      , count(std::clamp(wholeLength / kShortest, 1, kMaximum)) {}

    // The part number, 0 to count - 1.
    cv::Range part(int number) const {
        return {static_cast<int>(std::int64_t{length} * number / count),
                static_cast<int>(std::int64_t{length} * (number + 1) / count)};
    }

    static constexpr int kShortest = 64;
    static constexpr int kMaximum = 8;

    int length;
    int count;
};

// Calls work(range, number) for each part, on several threads at once.
template <typename Work>
void forEachStrip(const Strips& strips, const Work& work) {
    shareWork(strips.count, [&](const cv::Range& numbers) {
        for (int number = numbers.start; number < numbers.end; ++number) {
            work(strips.part(number), number);
        }
    });
}

// Calls work(row) for rows 0 to count - 1, on several threads at once.
template <typename Work>
void forEachRow(int count, const Work& work) {
    forEachStrip(Strips(count), [&](cv::Range part, int /*number*/) {
        for (int row = part.start; row < part.end; ++row) {
            work(row);
        }
    });
}

} // namespace doccam
