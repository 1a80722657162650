#include "pdf_file.h"

#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sstream>

namespace doccam::test {
namespace {

std::vector<std::vector<std::string>> wordsOf(const std::string& text) {
    std::vector<std::vector<std::string>> lines;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) {
        std::istringstream words(line);
        lines.emplace_back();
        for (std::string word; words >> word;) {
            lines.back().push_back(word);
        }
    }
    return lines;
}

} // namespace

std::string outputOf(const std::string& command) {
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string text;
    std::array<char, 4096> chunk{};
    for (std::size_t count = 0; (count = std::fread(chunk.data(), 1, chunk.size(), pipe)) > 0;) {
        text.append(chunk.data(), count);
    }
    EXPECT_EQ(pclose(pipe), 0) << command << '\n' << text;
    return text;
}

std::vector<std::string> pageSizes(const std::string& path) {
    outputOf("qpdf --check '" + path + "' 2>&1");
    std::vector<std::string> sizes;
    for (const auto& words : wordsOf(outputOf("pdfinfo -f 1 -l 999 '" + path + "' 2>&1"))) {
        if (words.size() >= 6 && words[0] == "Page" && words[2] == "size:") {
            sizes.push_back(words[3] + "x" + words[5]);
        }
    }
    return sizes;
}

std::vector<std::string> pictureKinds(const std::string& path) {
    std::vector<std::string> kinds;
    for (const auto& words : wordsOf(outputOf("pdfimages -list '" + path + "'"))) {
        if (words.size() > 8 && words[0] != "page") {
            kinds.push_back(words[5] + " " + words[6] + " " + words[7] + " " + words[8]);
        }
    }
    return kinds;
}

Decoded extractPicture(const std::string& path, int index) {
    const ScratchFolder scratch;
    outputOf("pdfimages -png '" + path + "' '" + scratch.file("p") + "'");
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "p-%03d.png", index);
    return readPng(scratch.file(name.data()));
}

Decoded drawPage(const std::string& path) {
    const ScratchFolder scratch;
    outputOf("pdftoppm -singlefile -r 72 -png '" + path + "' '" + scratch.file("page") + "'");
    return readPng(scratch.file("page.png"));
}

} // namespace doccam::test
