#include "reading_outcome.h"

#include "support/printed_text.h"

#include <ostream>

namespace doccam::test {

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << '"' << outcome.text << "\" after\n" << outcome.printed;
}

Outcome outcomeOf(std::string (*read)(cv::Mat, int), const cv::Mat& picture, int mode) {
    PrintedText printed;
    std::string text = read(picture, mode);
    return {std::move(text), printed.take()};
}

std::string nothing(int scans) {
    std::string lines;
    for (int i = 0; i < scans; ++i) {
        lines += "No BarQrCode!!\r\n";
    }
    return lines;
}

} // namespace doccam::test
