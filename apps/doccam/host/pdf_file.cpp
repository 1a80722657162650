#include "host/pdf_file.h"

#include "host/failure.h"

#include <doccam/doccam.h>

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace doccam::host {
namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return text;
}

// The library takes these as they are, by their name's end; whatever else is written anew.
bool goesInUnchanged(const std::string& image) {
    const std::string extension = std::filesystem::path(image).extension().string();
    return extension == ".jpg" || extension == ".png";
}

std::string pageOf(const OutputFile& file, const std::string& image, std::size_t number) {
    const cv::Mat picture = cv::imread(image, cv::IMREAD_COLOR);
    if (picture.empty()) {
        throw Failure(kFileFailed,
                      "The image " + image + " cannot be read; give JPEG, PNG or TIFF files.");
    }
    if (goesInUnchanged(image)) {
        return image;
    }
    const std::string page = file.part("page" + std::to_string(number) + ".png");
    if (!cv::imwrite(page, picture)) {
        throw Failure(kFileFailed, file.target().string() +
                                       " could not be written; look whether the disk is full.");
    }
    return page;
}

} // namespace

bool isPdfName(const std::string& name) {
    return lowerCase(std::filesystem::path(name).extension().string()) == ".pdf";
}

void publishPdf(OutputFile& file, const std::vector<std::string>& images) {
    std::vector<std::string> pages;
    for (const std::string& image : images) {
        pages.push_back(pageOf(file, image, pages.size()));
    }
    for (const std::string& page : pages) {
        AddImageFileToPDF(page.c_str());
    }
    const std::string draft = file.part("draft.pdf");
    if (CombineToPDF(draft.c_str(), false) != 0) {
        throw Failure(kFileFailed, file.target().string() +
                                       " could not be written; look whether its images are sound "
                                       "and the disk is not full.");
    }
    file.publish(draft);
}

} // namespace doccam::host
