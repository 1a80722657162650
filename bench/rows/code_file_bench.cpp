// Searching for a code in a picture file of the camera's full size.
#include "plain/barcode_file.h"
#include "quiet_output.h"
#include "row.h"

#include <doccam/doccam.hpp>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace doccam::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kQrCode = 1;

// The camera's picture as a file.
class PictureFile {
  public:
    explicit PictureFile(const Picture& picture) {
        std::ofstream file(path_, std::ios::binary);
        file.write(reinterpret_cast<const char*>(picture.jpeg->data()),
                   static_cast<std::streamsize>(picture.jpeg->size()));
    }

    ~PictureFile() { fs::remove(path_); }

    PictureFile(const PictureFile&) = delete;
    PictureFile& operator=(const PictureFile&) = delete;

    const std::string& path() const { return path_; }

  private:
    const QuietOutput quiet_;
    const std::string path_ =
        fs::temp_directory_path() / ("doccam-bench-code-" + std::to_string(getpid()) + ".jpg");
};

Contest codeFile(const Picture& picture) {
    const auto file = std::make_shared<PictureFile>(picture);
    const auto mine = std::make_shared<std::string>();
    const auto theirs = std::make_shared<std::string>();
    return {
        .ours =
            [=] {
                const char* const text = RecogBarQrCodeFromFile(file->path().c_str(), kQrCode);
                *mine = text == nullptr ? "" : text;
            },
        .peer = [=] { *theirs = plain::codeInFile(file->path()); },
        .same = [=] { return *mine == *theirs; },
    };
}

const Entry entry({.name = "RecogBarQrCodeFromFile",
                   .peer = "zbar's scan of the same file",
                   .bound = 1.05,
                   .contest = codeFile});

} // namespace
} // namespace doccam::bench
