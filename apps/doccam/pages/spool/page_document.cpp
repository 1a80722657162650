#include "pages/spool/page_document.h"

#include "pictures/reading.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <utility>

namespace doccam::host {
namespace {

constexpr std::size_t kMaximumManifest = 16 << 20;

[[noreturn]] void failToKeep() {
    throw Failure(kFileFailed, std::string("A page could not be kept (") + std::strerror(errno) +
                                   "); make room on the disk, or choose another with "
                                   "XDG_STATE_HOME, and take it again.");
}

KeptPage& at(Manifest& manifest, int id) {
    const auto found = std::find_if(manifest.pages.begin(), manifest.pages.end(),
                                    [id](const KeptPage& page) { return page.id == id; });
    if (found == manifest.pages.end()) {
        throw Failure(kNothingFound, "There is no page " + std::to_string(id) + ".");
    }
    return *found;
}

std::vector<KeptPage> inOrder(Manifest& manifest, const std::vector<int>& ids) {
    std::vector<KeptPage> ordered;
    ordered.reserve(ids.size());
    for (const int id : ids) {
        ordered.push_back(at(manifest, id));
    }
    std::vector<int> known = ids;
    std::sort(known.begin(), known.end());
    if (ids.size() != manifest.pages.size() ||
        std::adjacent_find(known.begin(), known.end()) != known.end()) {
        throw Failure(kUsage, "The order must name each page once.");
    }
    return ordered;
}

} // namespace

DamagedFrame::DamagedFrame(const std::string& frame)
  : Failure(kFileFailed,
            "The frame " + frame +
                " is missing or damaged, so its page is left out; drop the page or take it "
                "again.") {}

std::optional<Manifest> readManifest(const PrivateFolder& folder) {
    const auto text = folder.read(kManifestFile, kMaximumManifest);
    return text ? parseManifest(*text) : std::nullopt;
}

bool writeManifest(const PrivateFolder& folder, const Manifest& manifest) {
    const std::string text = textOf(manifest);
    return folder.write(kManifestFile,
                        {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
}

PageDocument::PageDocument(std::string name, PrivateFolder folder, UniqueFd lock, Manifest manifest,
                           MakeRoom makeRoom)
  : name_(std::move(name))
  , folder_(std::move(folder))
  , lock_(std::move(lock))
  , makeRoom_(std::move(makeRoom))
  , manifest_(std::move(manifest)) {}

std::unique_ptr<PageDocument> PageDocument::inFolder(const std::string& folder,
                                                     const DocumentPlan& plan) {
    PrivateFolder opened(folder);
    if (!opened.isOpen()) {
        failToKeep();
    }
    return std::make_unique<PageDocument>("", std::move(opened), UniqueFd(), Manifest{plan},
                                          [](std::uint64_t /*bytes*/) {});
}

DocumentPlan PageDocument::plan() const {
    const std::lock_guard lock(mutex_);
    return manifest_.plan;
}

std::vector<KeptPage> PageDocument::pages() const {
    const std::lock_guard lock(mutex_);
    return manifest_.pages;
}

void PageDocument::commit(const std::function<void(Manifest&)>& change) {
    Manifest changed = manifest_;
    changed.saved = 0;
    change(changed);
    if (!writeManifest(folder_, changed)) {
        failToKeep();
    }
    const std::lock_guard lock(mutex_);
    manifest_ = std::move(changed);
}

std::string PageDocument::keep(const FrameFile& frame) {
    makeRoom_(frame.size());
    // A frame that has become no page may have the number.
    std::string name = frameName(manifest_.last + 1, extensionOf(frame));
    if (!folder_.write(name, frame)) {
        failToKeep();
    }
    return name;
}

// By its descriptor, as what a path names may change.
cv::Mat PageDocument::frame(const std::string& name) const {
    const UniqueFd file = folder_.file(name);
    if (!file.isOpen()) {
        throw DamagedFrame(name);
    }
    try {
        return readPicture("/proc/self/fd/" + std::to_string(file.get()),
                           cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
    } catch (const Failure&) {
        throw DamagedFrame(name);
    }
}

FrameFile PageDocument::file(const std::string& name) const {
    constexpr std::size_t kMaximumFrame = 1 << 30;
    const auto bytes = folder_.read(name, kMaximumFrame);
    if (!bytes) {
        throw DamagedFrame(name);
    }
    return {bytes->begin(), bytes->end()};
}

KeptPage PageDocument::add(const std::string& frame, const Recipe& recipe,
                           const PageOrigin& origin) {
    commit([&](Manifest& manifest) {
        manifest.pages.push_back({++manifest.last, frame, recipe, origin});
    });
    return manifest_.pages.back();
}

void PageDocument::retake(int id, const std::string& frame, const Recipe& recipe,
                          const PageOrigin& origin) {
    const std::string before = at(manifest_, id).frame;
    commit([&](Manifest& manifest) {
        ++manifest.last;
        at(manifest, id) = {id, frame, recipe, origin};
    });
    folder_.remove(before);
}

void PageDocument::change(int id, const Recipe& recipe) {
    commit([&](Manifest& manifest) {
        KeptPage& page = at(manifest, id);
        page.recipe = recipe;
        page.origin.finished = false;
    });
}

void PageDocument::remove(int id) {
    const std::string frame = at(manifest_, id).frame;
    commit([&](Manifest& manifest) {
        std::erase_if(manifest.pages, [id](const KeptPage& page) { return page.id == id; });
    });
    folder_.remove(frame);
}

void PageDocument::reorder(const std::vector<int>& ids) {
    commit([&](Manifest& manifest) { manifest.pages = inOrder(manifest, ids); });
}

void PageDocument::setPlan(const DocumentPlan& plan) {
    commit([&](Manifest& manifest) { manifest.plan = plan; });
}

void PageDocument::markSaved() {
    commit([](Manifest& manifest) { manifest.saved = std::time(nullptr); });
}

} // namespace doccam::host
