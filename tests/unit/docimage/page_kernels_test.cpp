// The row kernels of page cleaning, for each instruction set of this machine.
#include "docimage/clean/page_kernels.h"
#include "plain/black_edge.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using doccam::PageKernels;
using doccam::WhitenRowInput;

class EachPageKernel : public testing::TestWithParam<PageKernels> {};

std::string named(const testing::TestParamInfo<PageKernels>& rows) {
    std::string name = rows.param.instructionSet;
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(PageKernels, EachPageKernel, testing::ValuesIn(doccam::allPageKernels()),
                         named);

// Runs mark over all colours and checks that exactly those for which wanted is true are marked.
template <typename Mark, typename Wanted>
void expectMarks(Mark mark, Wanted wanted) {
    std::vector<cv::Vec3b> row(256);
    std::vector<unsigned char> marks(row.size());
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            for (std::size_t i = 0; i < row.size(); ++i) {
                row[i] = cv::Vec3b(static_cast<uchar>(first), static_cast<uchar>(second),
                                   static_cast<uchar>(i));
            }
            mark(row.data()->val, 256, marks.data());
            for (std::size_t i = 0; i < row.size(); ++i) {
                ASSERT_EQ(marks[i], wanted(row[i]) ? 255 : 0) << row[i];
            }
        }
    }
}

TEST_P(EachPageKernel, MarksExactlyTheColouredPixels) {
    expectMarks(GetParam().markColours,
                [](const cv::Vec3b& pixel) { return doccam::plain::isColoured(pixel); });
}

TEST_P(EachPageKernel, MarksExactlyTheDarkPixels) {
    expectMarks(GetParam().markDark,
                [](const cv::Vec3b& pixel) { return (pixel[0] + pixel[1] + pixel[2]) / 3 <= 30; });
}

TEST_P(EachPageKernel, WritesNothingPastItsPixels) {
    for (const auto mark : {GetParam().markColours, GetParam().markDark}) {
        for (int count = 0; count <= 200; ++count) {
            const std::vector<unsigned char> row(static_cast<std::size_t>(3 * count), 70);
            std::vector<unsigned char> marks(static_cast<std::size_t>(count + 8), 99);
            mark(row.data(), count, marks.data());
            EXPECT_EQ(std::count(marks.begin(), marks.end(), 0), count);
            EXPECT_EQ(std::count(marks.begin(), marks.end(), 99), 8);
        }
    }
}

// Whole rows of one mean give the largest sums and those closest to each limit.
TEST_P(EachPageKernel, MarksAsPaperWhatIsAboveTheMeanLess19) {
    constexpr int kPixels = doccam::kSurroundings * doccam::kSurroundings;
    std::vector<unsigned char> grey(256);
    for (std::size_t i = 0; i < grey.size(); ++i) {
        grey[i] = static_cast<unsigned char>(i);
    }
    std::vector<unsigned char> paper(grey.size());
    std::vector<std::uint32_t> sums(grey.size() + doccam::kSurroundings);
    for (int mean = 0; mean <= 255; ++mean) {
        for (const int off : {-kPixels / 2, -1, 0, 1, kPixels / 2}) {
            const int sum = std::clamp(kPixels * mean + off, 0, kPixels * 255);
            const int rounded = cvRound(static_cast<double>(sum) / kPixels);
            for (std::size_t i = 0; i < sums.size(); ++i) {
                sums[i] =
                    static_cast<std::uint32_t>(static_cast<int>(i) / doccam::kSurroundings * sum);
            }
            GetParam().markPaper(grey.data(), sums.data(), doccam::kSurroundings, paper.data());
            for (std::size_t i = 0; i < doccam::kSurroundings; ++i) {
                ASSERT_EQ(paper[i], grey[i] - rounded > -19 ? 255 : 0) << i << ' ' << sum;
            }
        }
    }
}

// The whitening rules, pixel by pixel.
void whitenPlainly(const WhitenRowInput& row, const cv::Mat& sharp, unsigned char* result) {
    for (int x = 0; x < row.count; ++x) {
        const auto c = sharp.at<cv::Vec3b>(1, x);
        cv::Vec3b pixel(row.row[3 * x], row.row[3 * x + 1], row.row[3 * x + 2]);
        const bool isRed = c[2] - c[1] >= 81 || c[2] - c[0] >= 81;
        if (row.margin[x] == 255) {
            pixel = cv::Vec3b::all(255);
        } else if (doccam::plain::isColoured(c)) {
            pixel = isRed ? cv::Vec3b(cv::saturate_cast<uchar>(c[0] - 40),
                                      cv::saturate_cast<uchar>(c[1] - 40),
                                      cv::saturate_cast<uchar>(c[2] + 80))
                          : c;
        } else if (row.paper[x] == 255) {
            pixel = cv::Vec3b::all(255);
        }
        std::copy_n(pixel.val, 3, result + 3 * x);
    }
}

cv::Mat halfMarked(cv::RNG& random, int count) {
    cv::Mat marks(1, count, CV_8UC1);
    random.fill(marks, cv::RNG::UNIFORM, 0, 2);
    return marks * 255;
}

TEST_P(EachPageKernel, WhitensAsThePlainFilterAndRulesDo) {
    cv::RNG random(31);
    for (int count = 1; count <= 300; ++count) {
        cv::Mat rows(3, count, CV_8UC3);
        random.fill(rows, cv::RNG::NORMAL, random.uniform(0, 255), random.uniform(1, 90));
        cv::Mat sharp;
        cv::filter2D(rows, sharp, CV_8U, cv::Matx33f(0, -2, 0, 0, 5, 0, 0, -1.5F, 0));
        const cv::Mat margin = halfMarked(random, count);
        const cv::Mat paper = halfMarked(random, count);
        const WhitenRowInput row{rows.ptr(0),  rows.ptr(1), rows.ptr(2),
                                 margin.ptr(), paper.ptr(), count};
        std::vector<unsigned char> expected(static_cast<std::size_t>(3 * count));
        whitenPlainly(row, sharp, expected.data());
        std::vector<unsigned char> actual(expected.size());
        GetParam().whitenPaper(row, actual.data());
        ASSERT_EQ(actual, expected) << count;
        GetParam().whitenPaper(row, rows.ptr(1));
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), rows.ptr(1))) << count;
    }
}

} // namespace
