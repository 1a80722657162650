// One or two picture files on the pages of a PDF document.
#include "fuzz_target.h"
#include "input.h"
#include "modules/mjpeg/jpeg_header.h"
#include "scratch_file.h"

#include <doccam/doccam.hpp>

#include <algorithm>

namespace {

using namespace doccam;

constexpr std::int64_t kMaximumPixels = 1 << 18;

// The size in a PNG's header, its first chunk; zero for a file that ends earlier.
cv::Size pngSize(std::span<const unsigned char> file) {
    constexpr std::size_t kWidthAt = 16;
    constexpr std::size_t kHeaderEnd = 24;
    if (file.size() < kHeaderEnd) {
        return {};
    }
    const auto side = [file](std::size_t at) {
        return file[at] << 24 | file[at + 1] << 16 | file[at + 2] << 8 | file[at + 3];
    };
    return {side(kWidthAt), side(kWidthAt + 4)};
}

// Time and memory grow with the size that a file announces.
bool isSmall(cv::Size size) {
    return std::int64_t{size.width} * size.height <= kMaximumPixels;
}

void addPage(test::Input& input, std::size_t length) {
    const bool png = input.byte() % 2 == 1;
    const auto file = input.take(length);
    const auto sizes = png ? std::vector{pngSize(file)} : announcedSizes(file);
    if (std::all_of(sizes.begin(), sizes.end(), isSmall)) {
        pdf_addPage(test::writeScratchFile(png ? "page.png" : "page.jpg", file).c_str());
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::Input input(data, size);
    const std::size_t firstLength = input.word();
    pdf_start(test::scratchPath("pages.pdf").c_str());
    addPage(input, firstLength);
    if (!input.empty()) {
        addPage(input, size);
    }
    pdf_end();
    return 0;
}
