#include "serve/tray/page_store.h"

#include "base/pictures/picture_file.h"
#include "host/failure.h"
#include "pictures/writing.h"

#include <doccam/doccam.h>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <system_error>

namespace doccam::serve {
namespace {

constexpr int kThumbnailSide = 240;
constexpr int kTurnedQuality = 95;

// Empty if there is none.
std::filesystem::path temporaryPlace() {
    std::error_code ignored;
    return std::filesystem::temp_directory_path(ignored);
}

void write(const std::string& path, const cv::Mat& picture, int quality) {
    if (!host::writePicture(path, picture, quality)) {
        throw TrayError("the page could not be written; is the disk full?");
    }
}

cv::Mat read(const std::string& path) {
    cv::Mat picture = readPictureFile(path, cv::IMREAD_UNCHANGED);
    if (picture.empty()) {
        throw TrayError("the camera gave no picture; try again");
    }
    return picture;
}

void writeThumbnail(const std::string& path, const cv::Mat& picture) {
    constexpr int kThumbnailQuality = 80;
    const double scale = static_cast<double>(kThumbnailSide) / std::max(picture.cols, picture.rows);
    cv::Mat small;
    cv::resize(
        picture, small,
        {std::max(1, cvRound(picture.cols * scale)), std::max(1, cvRound(picture.rows * scale))}, 0,
        0, cv::INTER_AREA);
    write(path, small, kThumbnailQuality);
}

cv::Mat turned(const cv::Mat& picture, int quarterTurns) {
    constexpr cv::RotateFlags kTurns[] = {cv::ROTATE_90_CLOCKWISE, cv::ROTATE_180,
                                          cv::ROTATE_90_COUNTERCLOCKWISE};
    if (quarterTurns == 0) {
        return picture;
    }
    cv::Mat result;
    cv::rotate(picture, result, kTurns[quarterTurns - 1]);
    return result;
}

// Copies of the pages' files, removed with their folder.
struct Copies {
    std::filesystem::path folder;

    ~Copies() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
};

// Not every file system has links.
void linkOrCopy(const std::string& from, const std::string& to) {
    std::error_code error;
    std::filesystem::create_hard_link(from, to, error);
    if (error) {
        std::filesystem::copy_file(from, to, error);
    }
    if (error) {
        throw TrayError("the pages could not be gathered for the PDF; is the disk full?");
    }
}

auto find(auto& pages, int id) {
    return std::find_if(pages.begin(), pages.end(),
                        [&](const Page& page) { return page.id == id; });
}

} // namespace

PageStore::PageStore()
  : folder_(temporaryPlace()) {
    if (folder_.path().empty()) {
        throw host::Failure(host::kFileFailed,
                            "No folder for the pages can be made where temporary files lie; let "
                            "TMPDIR name another place.");
    }
}

std::string PageStore::pathOf(const Page& page, const char* kind) const {
    const std::string name = std::to_string(page.id) + "-" + std::to_string(page.version);
    return (folder_.path() / (name + kind + ".jpg")).string();
}

std::string PageStore::incoming() const {
    return (folder_.path() / "incoming.jpg").string();
}

void PageStore::requireRoom() const {
    const std::lock_guard lock(mutex_);
    if (pages_.size() >= kMaximumPages) {
        throw TrayError("the tray is full: it holds " + std::to_string(kMaximumPages) +
                        " pages; download and delete some");
    }
}

Page PageStore::add(const std::vector<std::string>& codes) {
    requireRoom();
    const cv::Mat picture = read(incoming());
    Page page{++lastId_, 1, picture.cols, picture.rows, 0, codes};
    writeThumbnail(pathOf(page, "-small"), picture);
    // The library's file remains the page and the original for its turns.
    std::filesystem::rename(incoming(), pathOf(page, ""));
    const std::lock_guard lock(mutex_);
    pages_.push_back(page);
    return page;
}

void PageStore::turn(int id, int quarterTurns) {
    Page page = at(id);
    const Page before = page;
    ++page.version;
    page.quarterTurns = (page.quarterTurns + quarterTurns % 4 + 4) % 4;
    const Page original{page.id, 1, 0, 0, 0, {}};
    const cv::Mat picture = turned(read(pathOf(original, "")), page.quarterTurns);
    page.width = picture.cols;
    page.height = picture.rows;
    write(pathOf(page, ""), picture, kTurnedQuality);
    writeThumbnail(pathOf(page, "-small"), picture);
    {
        const std::lock_guard lock(mutex_);
        *find(pages_, id) = page;
    }
    if (before.version > 1) {
        removeFiles(before);
    }
}

void PageStore::remove(int id) {
    const Page page = at(id);
    {
        const std::lock_guard lock(mutex_);
        pages_.erase(find(pages_, id));
    }
    removeFiles(page);
    removeFiles({page.id, 1, 0, 0, 0, {}});
}

void PageStore::reorder(const std::vector<int>& ids) {
    const std::lock_guard lock(mutex_);
    std::vector<Page> ordered;
    for (const int id : ids) {
        const auto found = find(pages_, id);
        if (found == pages_.end() || find(ordered, id) != ordered.end()) {
            break;
        }
        ordered.push_back(*found);
    }
    if (ordered.size() != pages_.size() || ids.size() != pages_.size()) {
        throw BadOrder("the order must name each page once");
    }
    pages_ = std::move(ordered);
}

std::vector<Page> PageStore::pages() const {
    const std::lock_guard lock(mutex_);
    return pages_;
}

std::optional<std::string> PageStore::picture(int id) const {
    const std::lock_guard lock(mutex_);
    const auto found = find(pages_, id);
    return found == pages_.end() ? std::nullopt : std::optional(pathOf(*found, ""));
}

std::optional<std::string> PageStore::thumbnail(int id) const {
    const std::lock_guard lock(mutex_);
    const auto found = find(pages_, id);
    return found == pages_.end() ? std::nullopt : std::optional(pathOf(*found, "-small"));
}

std::vector<std::string> PageStore::copyPictures(const std::filesystem::path& folder) const {
    std::error_code error;
    std::filesystem::create_directory(folder, error);
    const std::lock_guard lock(mutex_);
    std::vector<std::string> copies;
    for (const Page& page : pages_) {
        copies.push_back((folder / (std::to_string(copies.size()) + ".jpg")).string());
        linkOrCopy(pathOf(page, ""), copies.back());
    }
    return copies;
}

std::string PageStore::newDocument() {
    return (folder_.path() / ("pages-" + std::to_string(++lastDocument_) + ".pdf")).string();
}

const Page& PageStore::at(int id) const {
    const auto found = find(pages_, id);
    if (found == pages_.end()) {
        throw NoSuchPage("there is no page " + std::to_string(id));
    }
    return *found;
}

void PageStore::removeFiles(const Page& page) const {
    std::error_code ignored;
    std::filesystem::remove(pathOf(page, ""), ignored);
    std::filesystem::remove(pathOf(page, "-small"), ignored);
}

DocumentMaker::DocumentMaker(PageStore& pages)
  : pages_(pages)
  , queue_(kMaximumWaiting, "several PDFs are being made already; try again in some seconds")
  , thread_(ownedThread([this] { queue_.serve(); })) {}

DocumentMaker::~DocumentMaker() {
    close();
}

std::string DocumentMaker::make() {
    return queue_.order([this] { return write(); });
}

std::string DocumentMaker::write() {
    std::string path = pages_.newDocument();
    const Copies copies{path + ".pages"};
    for (const std::string& picture : pages_.copyPictures(copies.folder)) {
        AddImageFileToPDF(picture.c_str());
    }
    if (CombineToPDF(path.c_str(), false) != DOCCAM_OK) {
        throw TrayError("the PDF could not be made; take a page first, and see that the disk is "
                        "not full");
    }
    return path;
}

} // namespace doccam::serve
