#include "output/merge/merge_images.h"

#include "base/pictures/picture_file.h"
#include "output/files/files.h"
#include "output/still/save_image.h"
#include "state/documents.h"

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace doccam {
namespace {

using Queue = std::vector<std::string>;
using Pictures = std::array<cv::Mat, 4>;

constexpr std::size_t kFewestFiles = 2;
constexpr std::size_t kMaximumComposed = 3;

// Empty if the file cannot be read as a picture.
cv::Mat readQuietly(const std::string& path) {
    if (!fileExists(path.c_str())) {
        return {};
    }
    try {
        return readPictureFile(path, cv::IMREAD_COLOR);
    } catch (const cv::Exception&) {
        return {};
    }
}

Pictures readFirst(const Queue& files) {
    Pictures pictures;
    for (std::size_t i = 0; i < std::min(files.size(), pictures.size()); ++i) {
        pictures[i] = readQuietly(files[i]);
    }
    return pictures;
}

// The composition hook for two or three pictures. Deliberately empty: no layout is defined, so the
// merged picture stays empty and nothing is written.
void compose(const Pictures& /*pictures*/, std::size_t /*count*/, cv::Mat& /*merged*/) {}

} // namespace

int mergeQueued(record::Documents& documents, const record::Settings& settings, const char* path,
                int mergeMode, bool deleteSources) {
    if (documents.img_filelist.size() < kFewestFiles) {
        return -1;
    }
    const Queue files = std::exchange(documents.img_filelist, {});
    const Pictures pictures = readFirst(files);
    cv::Mat merged;
    if (mergeMode != 0 && files.size() <= kMaximumComposed) {
        compose(pictures, files.size(), merged);
    }
    if (!merged.empty()) {
        savePage(path, merged, settings);
    }
    if (path == nullptr || !fileExists(path)) {
        return -2;
    }
    if (deleteSources) {
        removeFiles(files);
    }
    return 0;
}

} // namespace doccam
