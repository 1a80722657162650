#include "read_rates.h"

#include "code_pictures.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <sstream>

namespace doccam::test {
namespace {

constexpr int kBarMode = 0;
constexpr int kQrMode = 1;
constexpr int kFileQuality = 90;

// Compared as a host sees it, up to the first zero byte.
std::string readFile(const cv::Mat& frame, int mode) {
    const ScratchFolder scratch;
    const std::string path = scratch.file("code.jpg");
    cv::Mat blueFirst;
    cv::cvtColor(frame, blueFirst, cv::COLOR_RGB2BGR);
    cv::imwrite(path, blueFirst, {cv::IMWRITE_JPEG_QUALITY, kFileQuality});
    const char* text = RecogBarQrCodeFromFile(path.c_str(), mode);
    return text != nullptr ? text : "";
}

bool isRight(const std::string& text, const std::string& expected, int& wrong) {
    wrong += text.empty() || text == expected ? 0 : 1;
    return text == expected;
}

Rate measureCell(const Kind& kind, const Difficulty& difficulty, int& wrong) {
    const int mode = kind.isQr ? kQrMode : kBarMode;
    Rate rate;
    for (int sample = 0; sample < difficulty.samples; ++sample) {
        const Code code = kind.make(sample);
        std::vector<Code> codes{code};
        if (difficulty.withOther) {
            codes.push_back(kind.isQr ? code128("OTHER 128") : qrCode("the other code"));
        }
        const cv::Mat frame = photograph(codes, difficulty.view(sample));
        const PrintedText silent;
        rate.frames += isRight(BarQrDecodePro(frame, mode), code.text, wrong) ? 1 : 0;
        rate.files += isRight(readFile(frame, mode), code.text.c_str(), wrong) ? 1 : 0;
    }
    return rate;
}

} // namespace

Rates measure(const Kind& kind) {
    Rates rates{kind.name, {}};
    for (const Difficulty& difficulty : difficulties()) {
        rates.cells.push_back(measureCell(kind, difficulty, rates.wrong));
    }
    return rates;
}

std::string heading() {
    std::string names = "| kind |";
    std::string rule = "|---|";
    for (const Difficulty& difficulty : difficulties()) {
        names += " " + difficulty.name + ", of " + std::to_string(difficulty.samples) + " |";
        rule += "---|";
    }
    return names + " wrong |\n" + rule + "---|\n";
}

std::string toRow(const Rates& rates) {
    std::ostringstream row;
    row << "| " << rates.kind << " |";
    for (const Rate& rate : rates.cells) {
        row << ' ' << rate.frames << " / " << rate.files << " |";
    }
    row << ' ' << rates.wrong << " |\n";
    return row.str();
}

Rates fromRow(const std::string& line) {
    Rates rates;
    std::istringstream row(line);
    std::string cell;
    std::getline(row, cell, '|');
    std::getline(row, cell, '|');
    rates.kind = cell.size() > 2 ? cell.substr(1, cell.size() - 2) : "";
    while (std::getline(row, cell, '|')) {
        std::istringstream numbers(cell);
        Rate rate;
        char slash = 0;
        if (numbers >> rate.frames >> slash >> rate.files) {
            rates.cells.push_back(rate);
        } else {
            rates.wrong = rate.frames;
        }
    }
    return rates;
}

} // namespace doccam::test
