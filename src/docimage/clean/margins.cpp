#include "docimage/clean/margins.h"

#include "base/pixel.h"
#include "base/shared_work.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace doccam {
namespace {

constexpr int kOutline = 3; // consecutive marks that form an outline

// Eight marks at once.
using Word = std::uint64_t;
constexpr int kWord = sizeof(Word);

Word wordAt(const uchar* marks) {
    Word word = 0;
    std::memcpy(&word, marks, sizeof word);
    return word;
}

bool isOutline(const uchar* marks) {
    return (marks[0] & marks[1] & marks[2]) != 0;
}

bool noneBeginsIn(const uchar* marks) {
    return (wordAt(marks) & wordAt(marks + 1) & wordAt(marks + 2)) == 0;
}

// The start of the first outline, or the row's length less two.
int firstOutline(const uchar* row, int width) {
    const int end = width - kOutline + 1;
    int x = 0;
    while (x + kWord <= end && noneBeginsIn(row + x)) {
        x += kWord;
    }
    while (x < end && !isOutline(row + x)) {
        ++x;
    }
    return x;
}

// The start of the last outline, or -1.
int lastOutline(const uchar* row, int width) {
    int x = width - kOutline;
    while (x - kWord + 1 >= 0 && noneBeginsIn(row + x - kWord + 1)) {
        x -= kWord;
    }
    while (x >= 0 && !isOutline(row + x)) {
        --x;
    }
    return x;
}

int leftMargin(const uchar* row, int width) {
    if (width < kOutline) {
        return width;
    }
    if ((row[1] & row[2]) != 0) {
        return kOutline;
    }
    return std::min(firstOutline(row, width) + kOutline, width);
}

int rightMargin(const uchar* row, int width) {
    return width < kOutline ? width : std::min(width - lastOutline(row, width), width);
}

// Walks all columns together, row by row, in memory order.
class ColumnWalk {
  public:
    ColumnWalk(cv::Range columns, std::vector<int>& depths)
      : columns_(columns)
      , depths_(depths)
      , waiting_(static_cast<std::size_t>(columns.size()), kWhite)
      , left_(columns.size()) {}

    bool isDone() const { return left_ == 0; }

    // Sets depth for each column whose outline starts in these three rows of marks.
    void meet(const uchar* one, const uchar* two, const uchar* three, int depth) {
        int i = 0;
        for (; i + kWord <= columns_.size(); i += kWord) {
            const int x = columns_.start + i;
            const Word met =
                wordAt(one + x) & wordAt(two + x) & wordAt(three + x) & wordAt(waiting_.data() + i);
            if (met != 0) {
                meet(one, two, three, depth, {i, i + kWord});
            }
        }
        meet(one, two, three, depth, {i, columns_.size()});
    }

  private:
    void meet(const uchar* one, const uchar* two, const uchar* three, int depth, cv::Range part) {
        for (int i = part.start; i < part.end; ++i) {
            const auto x = static_cast<std::size_t>(columns_.start) + static_cast<std::size_t>(i);
            uchar& waiting = waiting_[static_cast<std::size_t>(i)];
            if ((one[x] & two[x] & three[x] & waiting) != 0) {
                depths_[x] = depth;
                waiting = 0;
                --left_;
            }
        }
    }

    cv::Range columns_;
    std::vector<int>& depths_;
    std::vector<uchar> waiting_; // 255 until the column's outline is found
    int left_;
};

void findTops(const Marks& marks, cv::Range columns, std::vector<int>& depths) {
    ColumnWalk walk(columns, depths);
    for (int y = kOutline - 1; y < marks.size.height && !walk.isDone(); ++y) {
        const uchar* const second = marks.row(y - 1);
        const bool atBeginning = y == kOutline - 1;
        walk.meet(atBeginning ? second : marks.row(y - 2), second, marks.row(y), y + 1);
    }
}

void findBottoms(const Marks& marks, cv::Range columns, std::vector<int>& depths) {
    ColumnWalk walk(columns, depths);
    for (int y = marks.size.height - kOutline; y >= 0 && !walk.isDone(); --y) {
        walk.meet(marks.row(y), marks.row(y + 1), marks.row(y + 2), marks.size.height - y);
    }
}

// Columns of similar margins, painted together.
constexpr int kBlock = 64;

// The depths of the top and bottom margins in a block of columns.
struct BlockReach {
    int top = 0;
    int bottom = 0;
};

std::vector<BlockReach> reachOfBlocks(const Margins& margins) {
    std::vector<BlockReach> reach((margins.top.size() + kBlock - 1) / kBlock);
    for (std::size_t x = 0; x < margins.top.size(); ++x) {
        BlockReach& block = reach[x / kBlock];
        block.top = std::max(block.top, margins.top[x]);
        block.bottom = std::max(block.bottom, margins.bottom[x]);
    }
    return reach;
}

class MarginPainter {
  public:
    MarginPainter(cv::Mat& target, const Margins& margins)
      : target_(target)
      , margins_(margins)
      , reach_(reachOfBlocks(margins)) {}

    void paintRow(int y) const {
        const auto line = static_cast<std::size_t>(y);
        const int left = margins_.left[line];
        const int right = target_.cols - margins_.right[line];
        paint(y, 0, left);
        paint(y, right, target_.cols);
        for (int x = left; x < right;) {
            const int end = std::min((x / kBlock + 1) * kBlock, right);
            const BlockReach& block = reach_[static_cast<std::size_t>(x / kBlock)];
            if (y < block.top || y >= target_.rows - block.bottom) {
                paintColumns(y, x, end);
            }
            x = end;
        }
    }

  private:
    void paintColumns(int y, int begin, int end) const {
        for (int x = begin; x < end; ++x) {
            const auto column = static_cast<std::size_t>(x);
            if (y < margins_.top[column] || y >= target_.rows - margins_.bottom[column]) {
                paint(y, x, x + 1);
            }
        }
    }

    void paint(int y, int begin, int end) const {
        const std::size_t pixelSize = target_.elemSize();
        std::memset(target_.ptr(y) + static_cast<std::size_t>(begin) * pixelSize, kWhite,
                    static_cast<std::size_t>(end - begin) * pixelSize);
    }

    cv::Mat& target_;
    const Margins& margins_;
    std::vector<BlockReach> reach_;
};

} // namespace

Margins findMargins(const Marks& marks) {
    const auto width = static_cast<std::size_t>(marks.size.width);
    const auto height = static_cast<std::size_t>(marks.size.height);
    Margins margins;
    margins.left.resize(height);
    margins.right.resize(height);
    margins.top.assign(width, marks.size.height);
    margins.bottom.assign(width, marks.size.height);
    forEachRow(marks.size.height, [&](int y) {
        const auto line = static_cast<std::size_t>(y);
        margins.left[line] = leftMargin(marks.row(y), marks.size.width);
        margins.right[line] = rightMargin(marks.row(y), marks.size.width);
    });
    forEachStrip(Strips(marks.size.width), [&](cv::Range columns, int /*number*/) {
        findTops(marks, columns, margins.top);
        findBottoms(marks, columns, margins.bottom);
    });
    return margins;
}

void paintMargins(cv::Mat& target, const Margins& margins) {
    const MarginPainter painter(target, margins);
    forEachRow(target.rows, [&](int y) { painter.paintRow(y); });
}

} // namespace doccam
