// Sharing work among the machine's cores.
#pragma once

#include <opencv2/core/types.hpp>
#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <cstdint>
#include <span>

namespace doccam {

// Makes the calling thread leave count cores, initially 0, to others when it shares work.
void reserveCores(int count);

// Runs body over 0 to count - 1, in parts.
void runShared(int count, const cv::ParallelLoopBody& body);

// Calls work(range) for any parts of 0 to count - 1, on several threads at once.
template <typename Work>
void shareWork(int count, const Work& work) {
    class Body : public cv::ParallelLoopBody {
      public:
        explicit Body(const Work& work)
          : work_(work) {}

        void operator()(const cv::Range& range) const override { work_(range); }

      private:
        const Work& work_;
    };

    runShared(count, Body(work));
}

// Parts of nearly equal length, on whose number results must not depend.
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

// Copies the block from to target, which must be at least as large and not overlap it.
void copyInParallel(std::span<const unsigned char> from, unsigned char* target);

} // namespace doccam
