#include "codes/code_reading.h"

#include "host/apart.h"
#include "host/failure.h"
#include "pictures/picture_limits.h"
#include "pictures/reading.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::host {
namespace {

cv::Mat reduced(const cv::Mat& grey) {
    const double scale = std::sqrt(static_cast<double>(PictureLimits::kReducedPixels) /
                                   static_cast<double>(grey.total()));
    const auto side = [scale](int pixels) { return std::max(1, static_cast<int>(pixels * scale)); };
    cv::Mat smaller;
    cv::resize(grey, smaller, {side(grey.cols), side(grey.rows)}, 0, 0, cv::INTER_AREA);
    return smaller;
}

// Searches a picture file for codes.
class CodeSearch {
  public:
    explicit CodeSearch(const std::string& path)
      : path_(path)
      , grey_(readPicture(path, cv::IMREAD_GRAYSCALE))
      , reduced_(grey_.total() > PictureLimits::kReducedPixels) {
        if (reduced_) {
            grey_ = reduced(grey_);
        }
    }

    // One scan.
    std::string quick(CodeKind kind) const {
        const int mode = static_cast<int>(kind);
        if (reduced_) {
            return ZbarDecoder(grey_, mode);
        }
        const char* text = RecogBarQrCodeFromFile(path_.c_str(), mode);
        return text != nullptr ? text : "";
    }

    // Many scans, each with a different binarization.
    std::string thorough(CodeKind kind) const { return GetQR(grey_, static_cast<int>(kind)); }

  private:
    std::string path_;
    cv::Mat grey_;
    bool reduced_;
};

// A report starts with the digit of the kind. The quick scan runs for all kinds before the slow
// ones.
void reportCodes(const std::string& path, const std::vector<CodeKind>& kinds,
                 const Report& report) {
    const CodeSearch search(path);
    const auto reports = [&report](CodeKind kind, const std::string& text) {
        if (!text.empty()) {
            report(std::to_string(static_cast<int>(kind)) + text);
        }
        return !text.empty();
    };
    std::vector<CodeKind> missing;
    for (const CodeKind kind : kinds) {
        if (!reports(kind, search.quick(kind))) {
            missing.push_back(kind);
        }
    }
    for (const CodeKind kind : missing) {
        reports(kind, search.thorough(kind));
    }
}

} // namespace

std::string nameOf(CodeKind kind) {
    return kind == CodeKind::kQr ? "qr" : "bar";
}

FileCodes codesInFile(const std::string& path, const std::vector<CodeKind>& kinds,
                      const Context& context) {
    const PictureLimits limits = pictureLimits();
    const Bounds bounds{.bytes = limits.workingBytes(),
                        .processor = limits.reading,
                        .wall = limits.reading + limits.waiting,
                        .confined = context.options.confined};
    const Apart search = runApart(*context.interrupt, bounds,
                                  [&](const Report& report) { reportCodes(path, kinds, report); });
    if (search.end == ApartEnd::kCrashed) {
        throw Failure(kUsage, "The picture " + path +
                                  " cannot be read; look whether it is sound, or leave it out.");
    }
    FileCodes found;
    found.complete = search.end == ApartEnd::kDone;
    for (const CodeKind kind : kinds) {
        const std::string digit = std::to_string(static_cast<int>(kind));
        for (const std::string& report : search.reports) {
            if (report.starts_with(digit)) {
                found.codes.push_back({kind, report.substr(digit.size())});
            }
        }
    }
    return found;
}

// The library would return an earlier text if no more frames came.
std::string liveCode(CameraSession& session, CodeKind kind) {
    return BarQrDecodePro(session.nextFrame(), static_cast<int>(kind));
}

} // namespace doccam::host
