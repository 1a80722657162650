#include "reading.h"

#include <opencv2/imgcodecs.hpp>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace doccam::test {

namespace {

using virtualcam::PrintedPage;
using virtualcam::PrintedRegion;
using virtualcam::PrintedWord;
using virtualcam::RegionKind;

constexpr std::size_t kColumns = 12; // of tesseract's TSV
constexpr std::size_t kLeft = 6;

// Letters and digits, without the punctuation around them.
std::string bare(const std::string& word) {
    const auto counts = [](unsigned char letter) { return std::isalnum(letter) || letter >= 0x80; };
    const auto first = std::find_if(word.begin(), word.end(), counts);
    const auto last = std::find_if(word.rbegin(), std::make_reverse_iterator(first), counts);
    return {first, last.base()};
}

std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    char part[4096];
    while (pipe != nullptr) {
        const std::size_t count = std::fread(part, 1, sizeof part, pipe.get());
        if (count == 0) {
            break;
        }
        text.append(part, count);
    }
    return text;
}

bool isInPicture(const ReadWord& word, const PrintedPage& print, cv::Size page) {
    const cv::Point2d middle(word.box.x + word.box.width / 2.0, word.box.y + word.box.height / 2.0);
    const cv::Point printed(cvRound(middle.x * print.picture.cols / page.width),
                            cvRound(middle.y * print.picture.rows / page.height));
    return std::any_of(
        print.regions.begin(), print.regions.end(), [&](const PrintedRegion& region) {
            return region.kind == RegionKind::kPicture && region.box.contains(printed);
        });
}

bool take(std::map<std::string, int>& words, const std::string& word) {
    const auto found = words.find(word);
    return found != words.end() && found->second-- > 0;
}

} // namespace

std::vector<ReadWord> readWords(const cv::Mat& page, int dotsPerInch) {
    const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                       ("doccam-page-" + std::to_string(getpid()) + ".png");
    cv::imwrite(file, page, {cv::IMWRITE_PNG_COMPRESSION, 1});
    const std::string table =
        outputOf("OMP_THREAD_LIMIT=1 tesseract '" + file.string() + "' - -l eng --psm 3 --dpi " +
                 std::to_string(dotsPerInch) + " tsv 2>/dev/null");
    std::filesystem::remove(file);
    if (table.empty()) {
        throw std::runtime_error("tesseract cannot be run");
    }
    std::vector<ReadWord> words;
    std::istringstream lines(table);
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream cells(line);
        std::vector<std::string> row;
        for (std::string cell; std::getline(cells, cell, '\t');) {
            row.push_back(cell);
        }
        if (row.size() == kColumns && row[0] == "5" && !bare(row.back()).empty()) {
            const auto number = [&](std::size_t column) { return std::stoi(row[kLeft + column]); };
            words.push_back({bare(row.back()), {number(0), number(1), number(2), number(3)}});
        }
    }
    return words;
}

Reading compareWords(const PrintedPage& print, const std::vector<ReadWord>& read, cv::Size page,
                     bool markedApart) {
    std::map<std::string, int> wanted;
    std::map<std::string, int> marked;
    int count = 0;
    for (const PrintedWord& word : print.words) {
        const bool apart = markedApart && word.marked;
        ++(apart ? marked : wanted)[bare(word.text)];
        count += apart ? 0 : 1;
    }
    Reading reading;
    int found = 0;
    for (const ReadWord& word : read) {
        if (isInPicture(word, print, page)) {
            continue;
        }
        if (take(wanted, word.text)) {
            ++found;
        } else if (!take(marked, word.text)) {
            ++reading.wrong;
        }
    }
    reading.found = count == 0 ? 1 : static_cast<double>(found) / count;
    return reading;
}

} // namespace doccam::test
