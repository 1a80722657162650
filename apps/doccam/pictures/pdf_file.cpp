#include "pictures/pdf_file.h"

#include "host/failure.h"
#include "pictures/reading.h"
#include "pictures/writing.h"

#include <doccam/doccam.h>

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace doccam::host {
namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return text;
}

constexpr int kGoodQuality = 95;

// ".jpg" or ".png", which go into a PDF unchanged, by the file's signature; otherwise empty.
std::string typeOf(const std::string& image) {
    std::array<char, 3> start{};
    std::ifstream(image, std::ios::binary).read(start.data(), start.size());
    const std::string_view bytes(start.data(), start.size());
    return bytes == "\xFF\xD8\xFF" ? ".jpg" : bytes == "\x89PN" ? ".png" : "";
}

// Whether a JPEG has an orientation tag that turns it, as from a camera held on its side.
bool isTurned(const std::string& image, const PictureHeader& header) {
    const cv::Mat shown = readPicture(image, cv::IMREAD_REDUCED_GRAYSCALE_8);
    if (!header.exif) {
        return false;
    }
    const cv::Mat stored =
        readPicture(image, cv::IMREAD_REDUCED_GRAYSCALE_8 | cv::IMREAD_IGNORE_ORIENTATION);
    return shown.size() != stored.size() || cv::norm(shown, stored, cv::NORM_INF) > 0;
}

// The library goes by the extension. Not every file system has links.
void giveName(const std::string& image, const std::string& name) {
    std::error_code error;
    std::filesystem::create_symlink(std::filesystem::absolute(image), name, error);
    if (error) {
        std::filesystem::copy_file(image, name, error);
    }
}

std::string pageOf(const OutputFile& file, const std::string& image, std::size_t number) {
    const PictureHeader header = requirePicture(image);
    const std::string type = typeOf(image);
    std::string page =
        file.part("page" + std::to_string(number) + (type == ".jpg" ? type : ".png"));
    if (type == ".jpg" && !isTurned(image, header)) {
        giveName(image, page);
        return page;
    }
    const cv::Mat picture = readPicture(image, cv::IMREAD_COLOR);
    if (type == ".png") {
        giveName(image, page);
    } else {
        writePicture(file, page, picture, kGoodQuality);
    }
    return page;
}

std::string combined(const OutputFile& file, const std::vector<std::string>& pages) {
    for (const std::string& page : pages) {
        AddImageFileToPDF(page.c_str());
    }
    std::string draft = file.part("draft.pdf");
    if (CombineToPDF(draft.c_str(), false) != DOCCAM_OK) {
        throw Failure(kFileFailed, file.target().string() +
                                       " could not be written; look whether its images are sound "
                                       "and the disk is not full.");
    }
    return draft;
}

} // namespace

bool isPdfName(const std::string& name) {
    return lowerCase(std::filesystem::path(name).extension().string()) == ".pdf";
}

std::string draftPdf(const OutputFile& file, const std::vector<std::string>& images,
                     const Interrupt& interrupt, const PageNote& note) {
    std::vector<std::string> pages;
    for (const std::string& image : images) {
        interrupt.check();
        if (note) {
            note(pages.size() + 1);
        }
        pages.push_back(pageOf(file, image, pages.size()));
    }
    return combined(file, pages);
}

void publishPages(OutputFile& file, const std::vector<std::string>& pages) {
    file.publish(combined(file, pages));
}

void publishPdf(OutputFile& file, const std::vector<std::string>& images,
                const Interrupt& interrupt) {
    file.publish(draftPdf(file, images, interrupt));
}

} // namespace doccam::host
