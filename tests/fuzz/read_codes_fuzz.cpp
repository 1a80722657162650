// Reading all codes of a small grey picture as a host does.
#include "code_pixels.h"

#include <doccam/codes.h>

#include <cmath>
#include <cstring>

namespace {

constexpr double kSeconds = 0.2;

void requireSound(const DoccamCode& code, unsigned wanted) {
    using doccam::test::require;
    require((static_cast<unsigned>(code.symbology) & wanted) != 0);
    require(doccam_symbology_name(code.symbology) != nullptr);
    require(code.text[code.text_size] == '\0');
    require(std::strlen(code.addon) <= 5);
    for (const auto& corner : code.corners) {
        require(std::isfinite(corner[0]) && std::isfinite(corner[1]));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace doccam::test;
    Input input(data, size);
    const unsigned wanted =
        input.byte() % 2 == 0 ? DOCCAM_SYMBOLOGIES_ALL : DOCCAM_SYMBOLOGIES_MATRIX;
    const cv::Mat picture = pictureOf(input);
    const DoccamImage image{picture.data, picture.cols, picture.rows, picture.step,
                            DOCCAM_PIXELS_GREY};
    DoccamCodes* codes = nullptr;
    const int count = doccam_read_codes(&image, wanted, kSeconds, &codes);
    require(count >= 0 && codes != nullptr && codes->count == static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < codes->count; ++i) {
        requireSound(codes->codes[i], wanted);
    }
    doccam_codes_free(codes);
    return 0;
}
