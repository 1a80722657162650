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

std::string readFile(const cv::Mat& frame, int mode) {
    const ScratchFolder scratch;
    const std::string path = scratch.file("code.jpg");
    cv::Mat blueFirst;
    cv::cvtColor(frame, blueFirst, cv::COLOR_RGB2BGR);
    cv::imwrite(path, blueFirst, {cv::IMWRITE_JPEG_QUALITY, kFileQuality});
    const char* text = RecogBarQrCodeFromFile(path.c_str(), mode);
    return text != nullptr ? text : "";
}

} // namespace

Reading readSample(const Kind& kind, const Difficulty& difficulty, int sample) {
    const int mode = kind.isQr ? kQrMode : kBarMode;
    const Code code = kind.make(sample);
    std::vector<Code> codes{code};
    if (difficulty.withOther) {
        codes.push_back(kind.isQr ? code128("OTHER 128") : qrCode("the other code"));
    }
    const cv::Mat frame = photograph(codes, difficulty.view(sample));
    const PrintedText silent;
    const PrintedText complaints(
        PrintedText::Stream::kError); // zbar's warnings on halves of DataBar
    return {code.text, BarQrDecodePro(frame, mode), readFile(frame, mode)};
}

Rate measure(const Kind& kind, const Difficulty& difficulty, int& wrong) {
    Rate rate;
    for (int sample = 0; sample < difficulty.samples; ++sample) {
        const Reading reading = readSample(kind, difficulty, sample);
        rate.frames += reading.isFrameRight() ? 1 : 0;
        rate.files += reading.isFileRight() ? 1 : 0;
        wrong += reading.isFrameRight() || reading.frame.empty() ? 0 : 1;
        wrong += reading.isFileRight() || reading.file.empty() ? 0 : 1;
    }
    return rate;
}

Rates measure(const Kind& kind) {
    Rates rates{kind.name, {}};
    for (const Difficulty& difficulty : difficulties()) {
        rates.cells.push_back(measure(kind, difficulty, rates.wrong));
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

} // namespace doccam::test
