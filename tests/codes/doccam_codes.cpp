// What the library reads.
#include "code_readers.h"

#include <doccam/codes.h>

#include <memory>
#include <stdexcept>

namespace doccam::test {

namespace {

struct CodesRelease {
    void operator()(DoccamCodes* codes) const { doccam_codes_free(codes); }
};

} // namespace

std::vector<ReportedCode> readByDoccam(const cv::Mat& grey, double seconds) {
    const DoccamImage image{grey.data, grey.cols, grey.rows, grey.step, DOCCAM_PIXELS_GREY};
    DoccamCodes* read = nullptr;
    const int result = doccam_read_codes(&image, DOCCAM_SYMBOLOGIES_ALL, seconds, &read);
    const std::unique_ptr<DoccamCodes, CodesRelease> owner(read);
    if (result < 0) {
        throw std::runtime_error("doccam_read_codes returned " + std::to_string(result));
    }
    std::vector<ReportedCode> codes;
    for (std::size_t i = 0; i < read->count; ++i) {
        const DoccamCode& code = read->codes[i];
        codes.push_back({std::string(code.text, code.text_size), code.addon});
    }
    return codes;
}

} // namespace doccam::test
