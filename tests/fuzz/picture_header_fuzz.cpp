// Reading a picture file's header, compared with OpenCV.
#include "fuzz_target.h"
#include "pictures/headers/picture_header.h"
#include "scratch_file.h"

#include <opencv2/imgcodecs.hpp>

namespace {

using namespace doccam::host;

constexpr std::uint64_t kDecodedPixels = 65536;

void compareWithDecoder(const PictureHeader& header, const std::string& path) {
    const cv::Mat picture = cv::imread(path, cv::IMREAD_GRAYSCALE | cv::IMREAD_IGNORE_ORIENTATION);
    doccam::test::require(picture.empty() || (picture.cols == static_cast<int>(header.width) &&
                                              picture.rows == static_cast<int>(header.height)));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = doccam::test::writeScratchFile("header", {data, size});
    FileBytes file(path);
    const auto header = readPictureHeader(file);
    if (header) {
        doccam::test::require(header->width > 0 && header->height > 0);
        doccam::test::require(header->pixels >= std::uint64_t{header->width} * header->height);
        doccam::test::require(header->passes > 0);
    }
    if (header && header->pixels <= kDecodedPixels && header->decoderBytes <= kDecodedPixels * 8) {
        doccam::test::allowImageErrors([&] { compareWithDecoder(*header, path); });
    }
    return 0;
}
