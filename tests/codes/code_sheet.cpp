#include "code_sheet.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::test {

namespace {

constexpr int kGap = 6 * kSheetModule; // between two codes
constexpr int kRim = 4 * kSheetModule; // of the sheet
const cv::Scalar kWhite = cv::Scalar::all(255);

cv::Mat scaledSymbol(const PrintedCode& code) {
    cv::Mat symbol = drawCode(code.code, code.scale);
    if (code.module != kSheetModule) {
        const double scale = static_cast<double>(kSheetModule) / code.module;
        cv::resize(symbol, symbol, {}, scale, scale, cv::INTER_AREA);
    }
    return symbol;
}

cv::Mat turned(const cv::Mat& symbol, double degrees) {
    if (degrees == 0) {
        return symbol;
    }
    const cv::Point2f middle(static_cast<float>(symbol.cols) / 2,
                             static_cast<float>(symbol.rows) / 2);
    cv::Mat motion = cv::getRotationMatrix2D(middle, degrees, 1);
    const cv::Rect box =
        cv::RotatedRect(middle, cv::Size2f(symbol.size()), static_cast<float>(degrees))
            .boundingRect();
    motion.at<double>(0, 2) -= box.x;
    motion.at<double>(1, 2) -= box.y;
    cv::Mat result;
    cv::warpAffine(symbol, result, motion, box.size(), cv::INTER_LINEAR, cv::BORDER_CONSTANT,
                   kWhite);
    return result;
}

std::vector<cv::Mat> symbolsOf(const std::vector<PrintedCode>& codes, double turn,
                               cv::RNG& random) {
    std::vector<cv::Mat> symbols;
    for (const PrintedCode& code : codes) {
        symbols.push_back(turned(scaledSymbol(code), turn * random.uniform(-1.0, 1.0)));
    }
    return symbols;
}

struct Grid {
    int columns = 1;
    cv::Size cell;

    cv::Size size(std::size_t codes) const {
        const int rows = (static_cast<int>(codes) + columns - 1) / columns;
        return {columns * cell.width, rows * cell.height};
    }
};

// The number of columns with which a picture of that shape shows the codes largest.
Grid gridFor(const std::vector<cv::Mat>& symbols, double aspect) {
    Grid grid;
    for (const cv::Mat& symbol : symbols) {
        grid.cell = {std::max(grid.cell.width, symbol.cols + kGap),
                     std::max(grid.cell.height, symbol.rows + kGap)};
    }
    Grid best = grid;
    const auto side = [&](const Grid& tried) {
        const cv::Size size = tried.size(symbols.size());
        return std::max(static_cast<double>(size.width), size.height * aspect);
    };
    for (grid.columns = 1; grid.columns <= static_cast<int>(symbols.size()); ++grid.columns) {
        best = side(grid) < side(best) ? grid : best;
    }
    return best;
}

void printText(cv::Mat& sheet, cv::RNG& random) {
    constexpr double kSize = 1.6;
    constexpr int kStep = 72;
    for (int y = kStep; y < sheet.rows; y += kStep) {
        std::string line;
        while (static_cast<int>(line.size()) * 30 < sheet.cols) {
            line.append(static_cast<std::size_t>(random.uniform(2, 9)),
                        static_cast<char>(random.uniform('a', 'z' + 1)));
            line += ' ';
        }
        cv::putText(sheet, line, {kStep / 2, y}, cv::FONT_HERSHEY_SIMPLEX, kSize,
                    cv::Scalar::all(40), 4, cv::LINE_AA);
    }
}

void addGrain(cv::Mat& sheet, cv::RNG& random) {
    constexpr double kGrain = 9;
    cv::Mat coarse(sheet.rows / 3 + 1, sheet.cols / 3 + 1, CV_8U);
    random.fill(coarse, cv::RNG::NORMAL, 3 * kGrain, kGrain);
    cv::Mat grain;
    cv::resize(coarse, grain, sheet.size(), 0, 0, cv::INTER_LINEAR);
    cv::subtract(sheet, grain, sheet);
}

} // namespace

CodeSheet printSheet(const std::vector<PrintedCode>& codes, const SheetPlan& plan,
                     cv::RNG& random) {
    const std::vector<cv::Mat> symbols = symbolsOf(codes, plan.turn, random);
    const Grid grid = gridFor(symbols, plan.aspect);
    const cv::Size all = grid.size(codes.size());
    cv::Mat sheet(std::max(all.height + 2 * kRim, plan.least.height),
                  std::max(all.width + 2 * kRim, plan.least.width), CV_8U, kWhite);
    if (plan.text) {
        printText(sheet, random);
    }
    const cv::Point origin((sheet.cols - all.width) / 2, (sheet.rows - all.height) / 2);
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        const cv::Mat& symbol = symbols[i];
        const int column = static_cast<int>(i) % grid.columns;
        const int row = static_cast<int>(i) / grid.columns;
        const cv::Point at =
            origin + cv::Point(column * grid.cell.width + (grid.cell.width - symbol.cols) / 2,
                               row * grid.cell.height + (grid.cell.height - symbol.rows) / 2);
        symbol.copyTo(sheet(cv::Rect(at, symbol.size())));
    }
    if (plan.inverted) {
        cv::bitwise_not(sheet, sheet);
    }
    if (plan.text) {
        addGrain(sheet, random);
    }
    CodeSheet result{{}, all};
    cv::cvtColor(sheet, result.picture, cv::COLOR_GRAY2BGR);
    return result;
}

} // namespace doccam::test
