// What ZXing alone reads.
#include "code_readers.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>

#include <cstdint>
#include <cstdlib>
#include <optional>

namespace doccam::test {

namespace {

constexpr ZXing::BarcodeFormats kDataBars =
    ZXing::BarcodeFormat::DataBar | ZXing::BarcodeFormat::DataBarExpanded;
constexpr ZXing::BarcodeFormats kTrade = ZXing::BarcodeFormat::EAN13 | ZXing::BarcodeFormat::EAN8 |
                                         ZXing::BarcodeFormat::UPCA | ZXing::BarcodeFormat::UPCE;

ZXing::DecodeHints hintsFor(ZXing::BarcodeFormats formats) {
    ZXing::DecodeHints hints;
    hints.setFormats(formats).setTryHarder(true).setTryRotate(true).setTryDownscale(true);
    hints.setEanAddOnSymbol(ZXing::EanAddOnSymbol::Read);
    hints.setReturnCodabarStartEnd(true);
    return hints;
}

ZXing::BarcodeFormats linearFormats() {
    ZXing::BarcodeFormats formats;
    for (const auto format : ZXing::BarcodeFormats(ZXing::BarcodeFormat::LinearCodes)) {
        if (!kDataBars.testFlag(format)) {
            formats |= format;
        }
    }
    return formats;
}

// ZXing writes an add-on behind its code, after a space.
ReportedCode reported(const ZXing::Result& result) {
    const std::string text = result.text();
    const std::size_t space = text.find(' ');
    if (!kTrade.testFlag(result.format()) || space == std::string::npos) {
        return {text, {}};
    }
    return {text.substr(0, space), text.substr(space + 1)};
}

std::vector<ReportedCode> read(const cv::Mat& grey, const ZXing::DecodeHints& hints) {
    const ZXing::ImageView view(grey.data, grey.cols, grey.rows, ZXing::ImageFormat::Lum,
                                static_cast<int>(grey.step));
    std::vector<ReportedCode> codes;
    for (const ZXing::Result& result : ZXing::ReadBarcodes(view, hints)) {
        codes.push_back(reported(result));
    }
    return codes;
}

void write(std::string& bytes, const std::string& text) {
    const auto size = static_cast<std::uint32_t>(text.size());
    bytes.append(reinterpret_cast<const char*>(&size), sizeof size);
    bytes += text;
}

std::string take(const std::string& bytes, std::size_t& at) {
    std::uint32_t size = 0;
    bytes.copy(reinterpret_cast<char*>(&size), sizeof size, at);
    at += sizeof size + size;
    return bytes.substr(at - size, size);
}

[[noreturn]] void readInChild(const cv::Mat& grey, const ZXing::DecodeHints& hints, int pipe) {
    const rlimit none{};
    setrlimit(RLIMIT_CORE, &none);
    close(STDERR_FILENO);
    std::string bytes;
    for (const ReportedCode& code : read(grey, hints)) {
        write(bytes, code.text);
        write(bytes, code.addon);
    }
    const bool written =
        ::write(pipe, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    _exit(written ? EXIT_SUCCESS : EXIT_FAILURE);
}

std::string everythingFrom(int pipe) {
    std::string bytes;
    char part[4096];
    for (ssize_t size = 0; (size = ::read(pipe, part, sizeof part)) > 0;) {
        bytes.append(part, static_cast<std::size_t>(size));
    }
    return bytes;
}

// Nothing if the process ended: Debian's build contains assertions, and one fails where a linear
// code is found twice.
std::optional<std::vector<ReportedCode>> readApart(const cv::Mat& grey,
                                                   const ZXing::DecodeHints& hints) {
    int pipes[2];
    if (pipe(pipes) != 0) {
        return std::nullopt;
    }
    const pid_t child = fork();
    if (child == 0) {
        readInChild(grey, hints, pipes[1]);
    }
    close(pipes[1]);
    const std::string bytes = everythingFrom(pipes[0]);
    close(pipes[0]);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        return std::nullopt;
    }
    std::vector<ReportedCode> codes;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::string text = take(bytes, at);
        codes.push_back({text, take(bytes, at)});
    }
    return codes;
}

// With the options that it survives, the best first.
std::vector<ReportedCode> readLinear(const cv::Mat& grey, ZXing::BarcodeFormats formats) {
    const ZXing::DecodeHints best = hintsFor(formats);
    for (const ZXing::DecodeHints& hints :
         {best, ZXing::DecodeHints(best).setTryDownscale(false),
          ZXing::DecodeHints(best).setMaxNumberOfSymbols(1),
          ZXing::DecodeHints(best).setMaxNumberOfSymbols(1).setMinLineCount(1)}) {
        if (auto codes = readApart(grey, hints)) {
            return *codes;
        }
    }
    return {};
}

} // namespace

std::vector<ReportedCode> readByZxing(const cv::Mat& grey) {
    std::vector<ReportedCode> codes = read(grey, hintsFor(ZXing::BarcodeFormat::MatrixCodes));
    for (const ZXing::BarcodeFormats formats : {linearFormats(), kDataBars}) {
        const std::vector<ReportedCode> linear = readLinear(grey, formats);
        codes.insert(codes.end(), linear.begin(), linear.end());
    }
    return codes;
}

std::vector<ReportedCode> readByZxingHere(const cv::Mat& grey) {
    std::vector<ReportedCode> codes = read(grey, hintsFor(ZXing::BarcodeFormat::MatrixCodes));
    const std::vector<ReportedCode> linear =
        read(grey, hintsFor(linearFormats()).setTryDownscale(false));
    codes.insert(codes.end(), linear.begin(), linear.end());
    return codes;
}

} // namespace doccam::test
