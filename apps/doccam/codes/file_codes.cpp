#include "codes/file_codes.h"

#include "host/apart.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "pictures/picture_limits.h"
#include "pictures/reading.h"

#include <opencv2/imgcodecs.hpp>

#include <iterator>

namespace doccam::host {
namespace {

// Of the time of a file, so that a last try does not outlast it; the rest is for decoding.
constexpr double kForThePicture = 0.6;
constexpr double kForItsSheets = 0.25;

// As CBOR, whose strings may have any bytes.
std::string reportOf(const CodesFound& found) {
    Json codes = Json::array();
    for (const Code& code : found.codes) {
        Json corners = Json::array();
        for (const cv::Point2d& corner : code.corners) {
            corners.push_back({corner.x, corner.y});
        }
        codes.push_back({code.symbology, code.text, code.bytes, code.addon, corners});
    }
    const std::vector<std::uint8_t> bytes = Json::to_cbor({found.complete, codes});
    return {bytes.begin(), bytes.end()};
}

Code codeIn(const Json& report) {
    Code code{report.at(0), report.at(1), report.at(2), report.at(3)};
    for (std::size_t i = 0; i < code.corners.size(); ++i) {
        const Json& corner = report.at(4).at(i);
        code.corners.at(i) = {corner.at(0).get<double>(), corner.at(1).get<double>()};
    }
    return code;
}

// Throws Json::exception for bytes that reportOf() did not make.
void addReport(CodesFound& found, const std::string& bytes) {
    const Json report = Json::from_cbor(bytes);
    found.complete = found.complete && report.at(0).get<bool>();
    const Json& codes = report.at(1);
    std::transform(codes.begin(), codes.end(), std::back_inserter(found.codes), codeIn);
}

void reportCodes(const std::string& path, unsigned symbologies, double seconds,
                 const Report& report) {
    const cv::Mat grey = readPicture(path, cv::IMREAD_GRAYSCALE);
    const CodesFound found = codesIn(grey, symbologies, seconds * kForThePicture);
    report(reportOf(found));
    report(reportOf(codesOnSheets(grey, found.codes, symbologies, seconds * kForItsSheets)));
}

} // namespace

CodesFound codesInFile(const std::string& path, unsigned symbologies, const Context& context) {
    const PictureLimits limits = pictureLimits();
    const Bounds bounds{.bytes = limits.workingBytes(),
                        .processor = limits.reading,
                        .wall = limits.reading + limits.waiting,
                        .confined = context.options.confined};
    const auto seconds = static_cast<double>(limits.reading.count());
    const Apart search = runApart(*context.interrupt, bounds, [&](const Report& report) {
        reportCodes(path, symbologies, seconds, report);
    });
    CodesFound found;
    found.complete = search.end == ApartEnd::kDone;
    try {
        for (const std::string& report : search.reports) {
            addReport(found, report);
        }
    } catch (const Json::exception&) { // of a decoder that an attacker has taken over
        found.codes.clear();
    }
    if (search.end == ApartEnd::kCrashed) {
        throw Failure(kUsage, "The picture " + path +
                                  " cannot be read; look whether it is sound, or leave it out.");
    }
    return found;
}

} // namespace doccam::host
