#include "code_tally.h"

#include <algorithm>

namespace doccam::test {

namespace {

bool isTextOf(const PrintedCode& code, const std::string& text) {
    return std::find(code.texts.begin(), code.texts.end(), text) != code.texts.end();
}

} // namespace

ReaderTally& ReaderTally::operator+=(const ReaderTally& other) {
    read += other.read;
    wrong += other.wrong;
    twice += other.twice;
    return *this;
}

ReaderTally compare(const CodePicture& picture, const std::vector<ReportedCode>& reported) {
    std::vector<PrintedCode> codes = picture.counted;
    codes.insert(codes.end(), picture.others.begin(), picture.others.end());
    std::vector<bool> seen(codes.size(), false);
    ReaderTally tally;
    for (const ReportedCode& report : reported) {
        const auto code = std::find_if(codes.begin(), codes.end(), [&](const PrintedCode& printed) {
            return isTextOf(printed, report.text);
        });
        if (code == codes.end() || (!report.addon.empty() && report.addon != code->addon)) {
            ++tally.wrong;
            continue;
        }
        if (report.addon != code->addon) {
            continue;
        }
        const auto index = static_cast<std::size_t>(code - codes.begin());
        tally.twice += seen[index] ? 1 : 0;
        tally.read += !seen[index] && index < picture.counted.size() ? 1 : 0;
        seen[index] = true;
    }
    return tally;
}

CodeCell& CodeCell::operator+=(const CodeCell& other) {
    codes += other.codes;
    for (std::size_t i = 0; i < readers.size(); ++i) {
        readers[i] += other.readers[i];
    }
    return *this;
}

std::string complaint(const CodeCell& cell) {
    const ReaderTally& ours = cell.readers[kDoccam];
    const int better = std::max(cell.readers[kZbar].read, cell.readers[kZxing].read);
    std::string text;
    const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (ours.read < better) {
        add(std::to_string(ours.read) + " read, by zbar " +
            std::to_string(cell.readers[kZbar].read) + " and by ZXing " +
            std::to_string(cell.readers[kZxing].read));
    }
    if (ours.wrong > 0) {
        add(std::to_string(ours.wrong) + " wrong");
    }
    if (ours.twice > 0) {
        add(std::to_string(ours.twice) + " twice");
    }
    return text;
}

} // namespace doccam::test
