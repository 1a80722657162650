#include "documents/layers/fax_size.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace doccam::host {
namespace {

// Bits of the codes for runs of 0 to 63 pixels, and of those for multiples of 64 up to 1728.
constexpr std::array<unsigned char, 64> kWhiteRuns{
    8, 6, 4, 4, 4, 4, 4, 4, 5, 5, 5, 5, 6, 6, 6, 6, 6, 6, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 8, 8, 8,
    8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8};
constexpr std::array<unsigned char, 64> kBlackRuns{
    10, 3,  2,  2,  3,  4,  4,  5,  6,  6,  7,  7,  7,  8,  8,  9,  10, 10, 10, 11, 11, 11,
    11, 11, 11, 11, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12,
    12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12};
constexpr std::array<unsigned char, 27> kLongWhiteRuns{5, 5, 6, 7, 8, 8, 8, 8, 8, 8, 9, 9, 9, 9,
                                                       9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 6, 9};
constexpr std::array<unsigned char, 27> kLongBlackRuns{10, 12, 12, 12, 12, 12, 12, 13, 13,
                                                       13, 13, 13, 13, 13, 13, 13, 13, 13,
                                                       13, 13, 13, 13, 13, 13, 13, 13, 13};
constexpr int kVeryLong = 2560; // whose code of 12 bits repeats
constexpr std::array<unsigned char, 4> kVerticalBits{1, 3, 6, 7};
constexpr std::size_t kPassBits = 4;
constexpr std::size_t kHorizontalBits = 3;

std::size_t runBits(int length, bool black) {
    std::size_t bits = 0;
    for (; length >= kVeryLong; length -= kVeryLong) {
        bits += 12;
    }
    if (length >= 64) {
        const auto number = static_cast<std::size_t>(length / 64 - 1);
        bits += number >= kLongWhiteRuns.size() ? 12
                                                : (black ? kLongBlackRuns : kLongWhiteRuns)[number];
        length %= 64;
    }
    return bits + (black ? kBlackRuns : kWhiteRuns)[static_cast<std::size_t>(length)];
}

using Changes = std::vector<int>; // where white turns black, black white, and so on

// Ends with the width several times, which can be read past the last change.
void changesOf(const unsigned char* row, int width, Changes& changes) {
    changes.clear();
    bool black = false;
    for (int x = 0; x < width; ++x) {
        if ((row[x] != 0) != black) {
            black = !black;
            changes.push_back(x);
        }
    }
    changes.insert(changes.end(), 4, width);
}

std::size_t rowBits(const Changes& above, const Changes& row, int width) {
    std::size_t bits = 0;
    std::size_t next = 0; // in row; an even number: from white to black
    std::size_t b = 0;    // in above
    for (int at = -1; at < width;) {
        const bool black = next % 2 != 0;
        // The first change above to the other colour, right of the place reached.
        while (b > 0 && above[b - 1] > at) {
            --b;
        }
        while (above[b] < width && (above[b] <= at || b % 2 != (black ? 1U : 0U))) {
            ++b;
        }
        const int change = row[next];
        const int aside = std::abs(change - above[b]);
        if (above[b] < width && above[b + 1] < change) {
            bits += kPassBits;
            at = above[b + 1];
        } else if (aside <= 3) {
            bits += kVerticalBits[static_cast<std::size_t>(aside)];
            at = change;
            ++next;
        } else {
            const int after = row[next + 1];
            bits += kHorizontalBits + runBits(change - std::max(at, 0), black) +
                    runBits(after - change, !black);
            at = after;
            next += 2;
        }
    }
    return bits;
}

} // namespace

std::size_t faxSize(const cv::Mat& mask) {
    std::size_t bits = 24; // the end of the block
    Changes above(4, mask.cols);
    Changes row;
    for (int y = 0; y < mask.rows; ++y) {
        changesOf(mask.ptr<unsigned char>(y), mask.cols, row);
        bits += rowBits(above, row, mask.cols);
        std::swap(above, row);
    }
    return (bits + 7) / 8;
}

} // namespace doccam::host
