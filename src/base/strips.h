// Sharing the rows of a picture among the machine's processors.
#pragma once

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <cstdint>

namespace doccam {

// Parts of nearly the same length, few enough to be cheap and enough to keep processors busy.
// Results must not depend on their number.
struct Strips {
    explicit Strips(int wholeLength)
      : length(wholeLength)
      , count(std::clamp(wholeLength / kShortest, 1, kMost)) {}

    // The part with the given number, 0 to count - 1.
    cv::Range part(int number) const {
        return {static_cast<int>(std::int64_t{length} * number / count),
                static_cast<int>(std::int64_t{length} * (number + 1) / count)};
    }

    static constexpr int kShortest = 64;
    static constexpr int kMost = 8;

    int length;
    int count;
};

// Calls work(range, number) for each part, on several threads at once.
template <typename Work>
void forEachStrip(const Strips& strips, const Work& work) {
    class Body : public cv::ParallelLoopBody {
      public:
        Body(const Strips& strips, const Work& work)
          : strips_(strips)
          , work_(work) {}

        void operator()(const cv::Range& numbers) const override {
            for (int number = numbers.start; number < numbers.end; ++number) {
                work_(strips_.part(number), number);
            }
        }

      private:
        const Strips& strips_;
        const Work& work_;
    };

    cv::parallel_for_({0, strips.count}, Body(strips, work));
}

} // namespace doccam
