// Codes in pictures.
#include "codes/read_codes.h"
#include "exports/stateless/image_argument.h"

#include <doccam/codes.h>

#include <opencv2/imgproc.hpp>

#include <cstddef>
#include <memory>
#include <vector>

namespace doccam {
namespace {

using codes::Symbology;

static_assert(DOCCAM_EAN_13 == codes::asSet(Symbology::kEan13) &&
              DOCCAM_EAN_8 == codes::asSet(Symbology::kEan8) &&
              DOCCAM_UPC_A == codes::asSet(Symbology::kUpcA) &&
              DOCCAM_UPC_E == codes::asSet(Symbology::kUpcE) &&
              DOCCAM_DATABAR == codes::asSet(Symbology::kDataBar) &&
              DOCCAM_DATABAR_EXPANDED == codes::asSet(Symbology::kDataBarExpanded) &&
              DOCCAM_CODE_128 == codes::asSet(Symbology::kCode128) &&
              DOCCAM_CODE_93 == codes::asSet(Symbology::kCode93) &&
              DOCCAM_CODE_39 == codes::asSet(Symbology::kCode39) &&
              DOCCAM_CODABAR == codes::asSet(Symbology::kCodabar) &&
              DOCCAM_ITF == codes::asSet(Symbology::kItf) &&
              DOCCAM_QR == codes::asSet(Symbology::kQr) &&
              DOCCAM_MICRO_QR == codes::asSet(Symbology::kMicroQr) &&
              DOCCAM_DATA_MATRIX == codes::asSet(Symbology::kDataMatrix) &&
              DOCCAM_AZTEC == codes::asSet(Symbology::kAztec) &&
              DOCCAM_PDF417 == codes::asSet(Symbology::kPdf417) &&
              DOCCAM_MAXICODE == codes::asSet(Symbology::kMaxiCode));
static_assert(DOCCAM_SYMBOLOGIES_LINEAR == codes::kEveryLinear &&
              DOCCAM_SYMBOLOGIES_MATRIX == codes::kEveryMatrix &&
              DOCCAM_SYMBOLOGIES_ALL == codes::kEverySymbology);

// A result, with the texts behind it.
struct OwnedCodes : DoccamCodes {
    codes::Sightings held;
    std::vector<DoccamCode> rows;
};

DoccamCode asCode(const codes::Sighting& read) {
    DoccamCode code{};
    code.symbology = static_cast<int>(codes::asSet(read.symbology));
    code.text = read.text.c_str();
    code.text_size = read.text.size();
    code.bytes = reinterpret_cast<const unsigned char*>(read.bytes.data());
    code.bytes_size = read.bytes.size();
    code.addon = read.addon.c_str();
    for (std::size_t i = 0; i < read.corners.size(); ++i) {
        code.corners[i][0] = read.corners[i].x;
        code.corners[i][1] = read.corners[i].y;
    }
    return code;
}

std::unique_ptr<OwnedCodes> asCodes(codes::CodesRead read) {
    auto owned = std::make_unique<OwnedCodes>();
    owned->held = std::move(read.codes);
    for (const codes::Sighting& code : owned->held) {
        owned->rows.push_back(asCode(code));
    }
    owned->codes = owned->rows.empty() ? nullptr : owned->rows.data();
    owned->count = owned->rows.size();
    owned->complete = read.complete ? 1 : 0;
    return owned;
}

cv::Mat greyOf(const DoccamImage& image) {
    if (image.pixels == DOCCAM_PIXELS_GREY) {
        return pixelsOf(image);
    }
    cv::Mat grey;
    cv::cvtColor(pixelsOf(image), grey,
                 image.pixels == DOCCAM_PIXELS_RGB ? cv::COLOR_RGB2GRAY : cv::COLOR_BGR2GRAY);
    return grey;
}

} // namespace
} // namespace doccam

int doccam_read_codes(const DoccamImage* image, unsigned symbologies, double seconds,
                      DoccamCodes** result) {
    if (result != nullptr) {
        *result = nullptr;
    }
    const unsigned others = symbologies & ~DOCCAM_SYMBOLOGIES_ALL;
    if (image == nullptr || result == nullptr || symbologies == 0 || others != 0 ||
        !(seconds >= 0)) {
        return DOCCAM_CODES_BAD_ARGUMENT;
    }
    if (!doccam::isValid(*image)) {
        return DOCCAM_CODES_BAD_IMAGE;
    }
    return doccam::resultOf([&] {
        auto codes =
            doccam::asCodes(doccam::codes::readCodes(doccam::greyOf(*image), symbologies, seconds));
        const auto count = static_cast<int>(codes->count);
        *result = codes.release();
        return count;
    });
}

void doccam_codes_free(DoccamCodes* codes) {
    const std::unique_ptr<doccam::OwnedCodes> owned(static_cast<doccam::OwnedCodes*>(codes));
}

const char* doccam_symbology_name(int symbology) {
    return doccam::codes::nameOf(
        static_cast<doccam::codes::Symbology>(static_cast<unsigned>(symbology)));
}
