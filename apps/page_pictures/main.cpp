// Writes one picture per step from a hard frame to a page: main FOLDER
#include "hard_frame.h"

#include <doccam/doccam.hpp>
#include <doccam/page.h>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kShownHeight = 400;
// A part of the page at the shadow's rim, in pixels from its right side and from its bottom.
const cv::Rect kDetail(640, 620, 300, 260);

std::filesystem::path folder;

void write(const std::string& name, const cv::Mat& picture) {
    cv::imwrite((folder / (name + ".jpg")).string(), picture, {cv::IMWRITE_JPEG_QUALITY, 80});
}

cv::Mat shown(const cv::Mat& picture) {
    cv::Mat smaller;
    const double scale = static_cast<double>(kShownHeight) / picture.rows;
    cv::resize(picture, smaller, {}, scale, scale, cv::INTER_AREA);
    return smaller;
}

DoccamImage imageOf(const cv::Mat& picture) {
    return {picture.data, picture.cols, picture.rows, picture.step[0], DOCCAM_PIXELS_BGR};
}

using Page = std::unique_ptr<DoccamPage, decltype(&doccam_page_free)>;

cv::Mat fromBits(const DoccamPage& page) {
    cv::Mat grey(page.height, page.width, CV_8UC1);
    for (int y = 0; y < page.height; ++y) {
        const unsigned char* row = page.data + page.stride * static_cast<std::size_t>(y);
        for (int x = 0; x < page.width; ++x) {
            grey.at<uchar>(y, x) = (row[x / 8] << (x % 8) & 0x80) != 0 ? 255 : 0;
        }
    }
    return grey;
}

// The result as a picture of three channels.
cv::Mat pictureOf(int result, DoccamPage* made) {
    const Page page(made, doccam_page_free);
    if (result != 0) {
        throw std::runtime_error("no page was made");
    }
    if (page->pixels == DOCCAM_PIXELS_BGR) {
        return cv::Mat(page->height, page->width, CV_8UC3, page->data, page->stride).clone();
    }
    cv::Mat picture;
    cv::cvtColor(page->pixels == DOCCAM_PIXELS_BITS
                     ? fromBits(*page)
                     : cv::Mat(page->height, page->width, CV_8UC1, page->data, page->stride),
                 picture, cv::COLOR_GRAY2BGR);
    return picture;
}

DoccamSheet sheetIn(const cv::Mat& frame) {
    const DoccamImage image = imageOf(frame);
    DoccamSheet sheet{};
    if (doccam_find_sheets(&image, nullptr, &sheet, 1) != 1) {
        throw std::runtime_error("no sheet was found");
    }
    return sheet;
}

cv::Mat outlined(const cv::Mat& frame, const DoccamSheet& sheet) {
    cv::Mat picture = frame.clone();
    for (int i = 0; i < 4; ++i) {
        const auto corner = [&](int k) {
            return cv::Point(cvRound(sheet.corners[k % 4][0]), cvRound(sheet.corners[k % 4][1]));
        };
        cv::line(picture, corner(i), corner(i + 1), cv::Scalar(0, 220, 0), 16, cv::LINE_AA);
    }
    return picture;
}

cv::Mat rectified(const cv::Mat& frame, const DoccamSheet& sheet) {
    const DoccamImage image = imageOf(frame);
    DoccamPage* page = nullptr;
    const int result = doccam_rectify(&image, &sheet, &page);
    return pictureOf(result, page);
}

cv::Mat looking(const cv::Mat& flat, int look, int colour) {
    const DoccamImage image = imageOf(flat);
    DoccamPage* page = nullptr;
    const int result = doccam_look(&image, look, colour, &page);
    return pictureOf(result, page);
}

// What the same frame gives with SetPageEngine(0).
cv::Mat croppedToRectangle(const cv::Mat& frame) {
    cv::Mat redFirst;
    cv::cvtColor(frame, redFirst, cv::COLOR_BGR2RGB);
    SetDelBlackedge(1);
    SetDelBackColor(1);
    DrawingEdge(redFirst.data, redFirst.cols, redFirst.rows, 0);
    std::string path = (folder / "still.png").string();
    capture(path.data(), 0, 1, redFirst);
    cv::Mat page = cv::imread(path);
    std::filesystem::remove(path);
    return page;
}

void writeSteps() {
    const cv::Mat frame = doccam::pictures::hardFrame();
    const DoccamSheet sheet = sheetIn(frame);
    const cv::Mat flat = rectified(frame, sheet);
    const cv::Mat paper = looking(flat, DOCCAM_LOOK_PAPER, DOCCAM_COLOUR);
    const cv::Mat grey = looking(flat, DOCCAM_LOOK_PAPER, DOCCAM_COLOUR_GREY);
    const cv::Mat bits = looking(flat, DOCCAM_LOOK_PAPER, DOCCAM_COLOUR_BLACK_WHITE);
    write("1-frame", shown(frame));
    write("2-found", shown(outlined(frame, sheet)));
    write("3-rectified", shown(flat));
    write("4-paper", shown(paper));
    write("5-grey", shown(grey));
    write("6-black-and-white", shown(bits));
    const auto detail = [](const cv::Mat& page) {
        return page(kDetail - 2 * kDetail.tl() + cv::Point(page.cols, page.rows));
    };
    cv::Mat details;
    cv::hconcat(std::vector<cv::Mat>{detail(flat), detail(paper), detail(grey), detail(bits)},
                details);
    write("7-details", details);
    write("8-rectangle", shown(croppedToRectangle(frame)));
}

void writeLimits() {
    const cv::Mat frame = doccam::pictures::frameBeyondLimits();
    const DoccamSheet sheet = sheetIn(frame);
    const cv::Mat flat = rectified(frame, sheet);
    cv::Mat both;
    cv::hconcat(shown(outlined(frame, sheet)),
                shown(looking(flat, DOCCAM_LOOK_PAPER, DOCCAM_COLOUR)), both);
    write("9-limits", both);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 || !std::filesystem::is_directory(argv[1])) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    folder = argv[1];
    try {
        writeSteps();
        writeLimits();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
