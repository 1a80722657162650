// The scan of a line for the end of its margin, and painting the margins.
#include "docimage/margins.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace {

using doccam::Walk;

// '#' is a mark.
int depth(const std::string& line, Walk walk) {
    return doccam::marginDepth(static_cast<int>(line.size()), walk, [&](int position) {
        return line.at(static_cast<std::size_t>(position)) == '#';
    });
}

int forward(const std::string& line) {
    return depth(line, Walk::kForward);
}

int backward(const std::string& line) {
    return depth(line, Walk::kBackward);
}

TEST(MarginDepth, CoversTheMarginAndThreePixelsOfTheOutline) {
    EXPECT_EQ(forward("....###..."), 7);
    EXPECT_EQ(backward("....###..."), 6);
}

TEST(MarginDepth, CoversThreePixelsOfALongerOutline) {
    EXPECT_EQ(forward("...#####.."), 6);
    EXPECT_EQ(backward("...#####.."), 5);
}

TEST(MarginDepth, IsThreeForAnOutlineAtTheLinesEnd) {
    EXPECT_EQ(forward("###......."), 3);
    EXPECT_EQ(backward(".......###"), 3);
}

TEST(MarginDepth, IsTheWholeLineWithoutAnOutline) {
    EXPECT_EQ(forward(".........."), 10);
    EXPECT_EQ(backward(".........."), 10);
}

TEST(MarginDepth, IsTheWholeLineWhenTheOutlineEndsIt) {
    EXPECT_EQ(forward(".......###"), 10);
    EXPECT_EQ(backward("###......."), 10);
}

TEST(MarginDepth, PassesOverFewerThanThreeNeighbouringMarks) {
    EXPECT_EQ(forward("..##.##.#."), 10);
    EXPECT_EQ(backward(".#.##.##.."), 10);
    EXPECT_EQ(forward("..##.###.."), 8);
    EXPECT_EQ(backward("..###.##.."), 8);
}

TEST(MarginDepth, TakesPositionZeroForMarkedWhenWalkingForward) {
    EXPECT_EQ(forward(".##......."), 3);
    EXPECT_EQ(forward(".###......"), 3);
    EXPECT_EQ(forward(".#.###...."), 6);
}

TEST(MarginDepth, DoesNotTakePositionZeroForMarkedWhenASoleMarkPrecedesIt) {
    EXPECT_EQ(forward("##........"), 10);
    EXPECT_EQ(forward("#.##......"), 10);
}

TEST(MarginDepth, StopsAtTheLinesEndWhenWalkingBackwardOverMarksAtZeroAndOne) {
    EXPECT_EQ(backward("##........"), 10);
    EXPECT_EQ(backward(".#........"), 10);
}

TEST(MarginDepth, IsTheLengthOfALineTooShortForAnOutline) {
    EXPECT_EQ(forward(""), 0);
    EXPECT_EQ(backward(""), 0);
    EXPECT_EQ(forward("##"), 2);
    EXPECT_EQ(backward("##"), 2);
}

std::vector<std::string> painted(const doccam::Margins& margins, int type) {
    cv::Mat target(static_cast<int>(margins.left.size()), static_cast<int>(margins.top.size()),
                   type, cv::Scalar::all(7));
    doccam::paintMargins(target, margins);
    std::vector<std::string> rows;
    for (int y = 0; y < target.rows; ++y) {
        std::string row;
        for (int x = 0; x < target.cols; ++x) {
            const uchar* const pixel = target.ptr(y, x);
            for (std::size_t i = 1; i < target.elemSize(); ++i) {
                EXPECT_EQ(pixel[i], pixel[0]);
            }
            row += *pixel == 255 ? 'w' : (*pixel == 7 ? '.' : '?');
        }
        rows.push_back(row);
    }
    return rows;
}

TEST(PaintMargins, PaintsTheGivenDepthsFromEachSide) {
    const doccam::Margins margins{{1, 0, 2, 0}, {0, 3, 0, 0}, {0, 0, 0, 0, 1}, {0, 1, 0, 0, 2}};
    const std::vector<std::string> expected{
        "w...w",
        "..www",
        "ww..w",
        ".w..w",
    };
    EXPECT_EQ(painted(margins, CV_8UC1), expected);
    EXPECT_EQ(painted(margins, CV_8UC3), expected);
}

TEST(FindMargins, ScansEachRowAndColumnFromBothEnds) {
    const std::vector<std::string> marks{
        "......", ".###..", "..#...", "..#...", "......", "......", "......",
    };
    const auto margins = doccam::findMargins({6, 7}, [&](int x, int y) {
        return marks[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#';
    });
    EXPECT_EQ(margins.left, (std::vector<int>{6, 3, 6, 6, 6, 6, 6}));
    EXPECT_EQ(margins.right, (std::vector<int>{6, 5, 6, 6, 6, 6, 6}));
    EXPECT_EQ(margins.top, (std::vector<int>{7, 7, 3, 7, 7, 7}));
    EXPECT_EQ(margins.bottom, (std::vector<int>{7, 7, 6, 7, 7, 7}));
}

} // namespace
