// The scan of a line for the end of its margin, and painting the margins.
#include "docimage/clean/margins.h"
#include "plain/margins.h"
#include "support/same_picture.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using doccam::Margins;

// '#' is a mark.
std::vector<uchar> marked(const std::string& line) {
    std::vector<uchar> marks;
    for (const char character : line) {
        marks.push_back(character == '#' ? 255 : 0);
    }
    return marks;
}

enum class End { kFirst, kLast };

// The margin at one end of a line, which must be the same for a row and for a column.
int depth(const std::string& line, End end) {
    const std::vector<uchar> marks = marked(line);
    const auto length = static_cast<int>(line.size());
    const Margins ofRow = doccam::findMargins({marks.data(), {length, 1}});
    const Margins ofColumn = doccam::findMargins({marks.data(), {1, length}});
    const int inRow = end == End::kFirst ? ofRow.left.at(0) : ofRow.right.at(0);
    EXPECT_EQ(end == End::kFirst ? ofColumn.top.at(0) : ofColumn.bottom.at(0), inRow);
    return inRow;
}

int forward(const std::string& line) {
    return depth(line, End::kFirst);
}

int backward(const std::string& line) {
    return depth(line, End::kLast);
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

TEST(MarginDepth, IgnoresFewerThanThreeNeighbouringMarks) {
    EXPECT_EQ(forward("..##.##.#."), 10);
    EXPECT_EQ(backward(".#.##.##.."), 10);
    EXPECT_EQ(forward("..##.###.."), 8);
    EXPECT_EQ(backward("..###.##.."), 8);
}

TEST(MarginDepth, TreatsPositionZeroAsMarkedWhenWalkingForward) {
    EXPECT_EQ(forward(".##......."), 3);
    EXPECT_EQ(forward(".###......"), 3);
    EXPECT_EQ(forward(".#.###...."), 6);
}

TEST(MarginDepth, DoesNotTreatPositionZeroAsMarkedAfterASoleMark) {
    EXPECT_EQ(forward("##........"), 10);
    EXPECT_EQ(forward("#.##......"), 10);
}

TEST(MarginDepth, StopsAtTheLinesEndWhenWalkingBackwardOverMarksAtZeroAndOne) {
    EXPECT_EQ(backward("##........"), 10);
    EXPECT_EQ(backward(".#........"), 10);
}

TEST(MarginDepth, IsTheLengthOfALineTooShortForAnOutline) {
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
    std::vector<uchar> plane;
    for (const std::string& row : marks) {
        const std::vector<uchar> bytes = marked(row);
        plane.insert(plane.end(), bytes.begin(), bytes.end());
    }
    const Margins margins = doccam::findMargins({plane.data(), {6, 7}});
    EXPECT_EQ(margins.left, (std::vector<int>{6, 3, 6, 6, 6, 6, 6}));
    EXPECT_EQ(margins.right, (std::vector<int>{6, 5, 6, 6, 6, 6, 6}));
    EXPECT_EQ(margins.top, (std::vector<int>{7, 7, 3, 7, 7, 7}));
    EXPECT_EQ(margins.bottom, (std::vector<int>{7, 7, 6, 7, 7, 7}));
}

// Marks in runs, so that lines have outlines and near-outlines.
cv::Mat drawnMarks(cv::Size size, std::uint64_t seed) {
    cv::RNG random(seed);
    cv::Mat marks(size, CV_8UC1, cv::Scalar(0));
    for (int i = random.uniform(0, 40); i > 0; --i) {
        const cv::Rect run(random.uniform(0, size.width), random.uniform(0, size.height),
                           random.uniform(1, 6), random.uniform(1, 6));
        marks(run & cv::Rect({}, size)).setTo(255);
    }
    return marks;
}

void expectPlainMargins(const cv::Mat& marks) {
    const Margins actual = doccam::findMargins({marks.data, marks.size()});
    const auto expected = doccam::plain::findMargins(
        marks.size(), [&](int x, int y) { return marks.at<uchar>(y, x) == 255; });
    ASSERT_EQ(actual.left, expected.left);
    ASSERT_EQ(actual.right, expected.right);
    ASSERT_EQ(actual.top, expected.top);
    ASSERT_EQ(actual.bottom, expected.bottom);

    cv::Mat painted(marks.size(), CV_8UC3, cv::Scalar::all(9));
    cv::Mat plainlyPainted = painted.clone();
    doccam::paintMargins(painted, actual);
    doccam::plain::paintMargins(plainlyPainted, expected);
    ASSERT_TRUE(doccam::test::isSamePicture(painted, plainlyPainted));
}

TEST(FindMargins, AgreesWithTheWalkPixelByPixel) {
    for (int width = 1; width <= 80; ++width) {
        for (int i = 0; i < 30; ++i) {
            SCOPED_TRACE(testing::Message() << "width " << width << ", picture " << i);
            const auto seed = static_cast<std::uint64_t>(100 * width + i + 1);
            expectPlainMargins(drawnMarks({width, 1 + i * 3}, seed));
        }
    }
}

TEST(FindMargins, AgreesWithTheWalkPixelByPixelOnLargePictures) {
    for (int i = 0; i < 10; ++i) {
        SCOPED_TRACE(i);
        expectPlainMargins(drawnMarks({701 + i, 640 - i}, static_cast<std::uint64_t>(i + 1)));
    }
}

} // namespace
