// A still of the sheet: cut out, straightened, margins and background whitened, JPEG of quality 85.
#include "plain/outline.h"
#include "plain/page.h"
#include "quiet_output.h"
#include "row.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace doccam::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kFormat = 0;
constexpr int kQuality = 85;

// The folder of the two stills, which lives as long as the row.
class Stills {
  public:
    Stills() { fs::create_directories(folder_); }

    ~Stills() { fs::remove_all(folder_); }

    Stills(const Stills&) = delete;
    Stills& operator=(const Stills&) = delete;

    std::string ours() const { return folder_ / "ours.jpg"; }

    std::string plain() const { return folder_ / "plain.jpg"; }

    bool areSame() const {
        const std::string bytes = bytesOf(ours());
        return !bytes.empty() && bytes == bytesOf(plain());
    }

  private:
    static std::string bytesOf(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const QuietOutput quiet_;
    const fs::path folder_ =
        fs::temp_directory_path() / ("doccam-bench-stills-" + std::to_string(getpid()));
};

Contest still(const Picture& picture) {
    const auto stills = std::make_shared<Stills>();
    cv::Mat searched = picture.pixels.clone();
    const plain::Outline outline = plain::drawEdge(searched, 0);
    if (outline.result != 0) {
        throw std::runtime_error("no sheet on picture " + picture.name);
    }
    LibraryState& library = state();
    library.settings.isDelBlackedge = 1;
    library.settings.isDelBcakColor = 1;
    library.settings.jpgQuality = kQuality;
    const cv::Mat frame = picture.pixels;
    // Each still is a new file.
    const auto prepare = [corners = outline.corners](const std::string& file) {
        fs::remove(file);
        std::copy(corners.begin(), corners.end(), state().sheet.CutPoint.begin());
    };
    return {
        .ours = [=] { capture(stills->ours().data(), kFormat, kCropToSheet, frame); },
        .peer =
            [=] { plain::saveCleanPage(frame, state().sheet.CutPoint.data(), stills->plain()); },
        .same = [=] { return stills->areSame(); },
        .beforeOurs = [=] { prepare(stills->ours()); },
        .beforePeer = [=] { prepare(stills->plain()); },
    };
}

const Entry entry({.name = "still",
                   .peer = "a plain transcription",
                   .bound = 0.5,
                   .contest = still,
                   .rounds = 15});

} // namespace
} // namespace doccam::bench
