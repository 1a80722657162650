#include "checked_pdf.h"

#include <opencv2/imgcodecs.hpp>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>

namespace doccam::test {

std::string said(const std::string& commandLine) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
        popen((commandLine + " 2>&1").c_str(), "r"), pclose);
    std::string text;
    char some[4096];
    while (const std::size_t count = std::fread(some, 1, sizeof some, pipe.get())) {
        text.append(some, count);
    }
    return text;
}

bool isSound(const std::string& pdf) {
    return said("qpdf --check " + pdf).find("No syntax or stream encoding errors found") !=
           std::string::npos;
}

std::vector<std::string> pageSizes(const std::string& pdf) {
    std::istringstream lines(said("pdfinfo -f 1 -l 99 " + pdf));
    std::vector<std::string> sizes;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t at = line.find("size:");
        if (line.starts_with("Page ") && at != std::string::npos) {
            const std::string size = line.substr(line.find_first_not_of(' ', at + 5));
            sizes.push_back(size.substr(0, size.find(" pts")));
        }
    }
    return sizes;
}

std::vector<std::string> encodings(const std::string& pdf) {
    std::istringstream lines(said("pdfimages -list " + pdf));
    std::vector<std::string> found;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string page, number, kind, width, height, colour, components, bits, encoding;
        words >> page >> number >> kind >> width >> height >> colour >> components >> bits >>
            encoding;
        if (kind == "image" || kind == "stencil") {
            found.push_back(encoding);
        }
    }
    return found;
}

cv::Mat shown(const std::string& pdf, int page, int dpi) {
    const std::string number = std::to_string(page);
    said("pdftoppm -singlefile -gray -r " + std::to_string(dpi) + " -f " + number + " -l " +
         number + " " + pdf + " " + pdf + "-shown");
    return cv::imread(pdf + "-shown.pgm", cv::IMREAD_GRAYSCALE);
}

} // namespace doccam::test
