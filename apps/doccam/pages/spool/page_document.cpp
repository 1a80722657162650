#include "pages/spool/page_document.h"

#include "pictures/headers/picture_header.h"
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

[[noreturn]] void failWithout(int id) {
    throw Failure(kNothingFound, "There is no page " + std::to_string(id) + ".");
}

KeptPage& at(Manifest& manifest, int id) {
    const auto found = std::find_if(manifest.pages.begin(), manifest.pages.end(),
                                    [id](const KeptPage& page) { return page.id == id; });
    if (found == manifest.pages.end()) {
        failWithout(id);
    }
    return *found;
}

// By its descriptor, as what a name means may change.
std::string pathOf(const UniqueFd& file) {
    return "/proc/self/fd/" + std::to_string(file.get());
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
                " is missing or damaged, or its corners are, so its page is left out.") {}

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

bool PageDocument::isSaved() const {
    const std::lock_guard lock(mutex_);
    return manifest_.saved != 0;
}

std::vector<KeptPage> PageDocument::pages() const {
    const std::lock_guard lock(mutex_);
    return manifest_.pages;
}

std::vector<KeptPage> PageDocument::removedPages() const {
    const std::lock_guard lock(mutex_);
    std::vector<KeptPage> pages;
    pages.reserve(manifest_.removed.size());
    for (const RemovedPage& removed : manifest_.removed) {
        pages.push_back(removed.page);
    }
    return pages;
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

cv::Mat PageDocument::frame(const std::string& name) const {
    const UniqueFd file = folder_.file(name);
    if (!file.isOpen() || !isWholeFrame(file.get())) {
        throw DamagedFrame(name);
    }
    try {
        return readPicture(pathOf(file), cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
    } catch (const Failure&) {
        throw DamagedFrame(name);
    }
}

cv::Size PageDocument::frameSize(const std::string& name) const {
    const UniqueFd file = folder_.file(name);
    FileBytes bytes(pathOf(file));
    const auto header = file.isOpen() && bytes.isOpen() ? readPictureHeader(bytes) : std::nullopt;
    return header ? cv::Size(static_cast<int>(header->width), static_cast<int>(header->height))
                  : cv::Size();
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
    const KeptPage before = at(manifest_, id);
    commit([&](Manifest& manifest) {
        ++manifest.last;
        at(manifest, id) = {id, frame, recipe, origin, before.changes + 1};
    });
    folder_.remove(before.frame);
}

void PageDocument::change(int id, const Recipe& recipe) {
    commit([&](Manifest& manifest) {
        KeptPage& page = at(manifest, id);
        page.recipe = recipe;
        page.origin.finished = false;
        ++page.changes;
    });
}

void PageDocument::remove(int id) {
    const std::string frame = at(manifest_, id).frame;
    commit([&](Manifest& manifest) {
        std::erase_if(manifest.pages, [id](const KeptPage& page) { return page.id == id; });
    });
    folder_.remove(frame);
}

void PageDocument::setAside(int id) {
    const KeptPage page = at(manifest_, id);
    std::string forgotten;
    commit([&](Manifest& manifest) {
        const auto place = std::find_if(manifest.pages.begin(), manifest.pages.end(),
                                        [id](const KeptPage& other) { return other.id == id; });
        manifest.removed.push_back(
            {page, static_cast<std::size_t>(place - manifest.pages.begin())});
        manifest.pages.erase(place);
        if (manifest.removed.size() > kMaximumRemoved) {
            forgotten = manifest.removed.front().page.frame;
            manifest.removed.erase(manifest.removed.begin());
        }
    });
    if (!forgotten.empty()) {
        folder_.remove(forgotten);
    }
}

void PageDocument::restore(int id) {
    commit([id](Manifest& manifest) {
        const auto found =
            std::find_if(manifest.removed.begin(), manifest.removed.end(),
                         [id](const RemovedPage& removed) { return removed.page.id == id; });
        if (found == manifest.removed.end()) {
            failWithout(id);
        }
        const std::size_t place = std::min(found->place, manifest.pages.size());
        manifest.pages.insert(manifest.pages.begin() + static_cast<std::ptrdiff_t>(place),
                              found->page);
        manifest.removed.erase(found);
    });
}

void PageDocument::reorder(const std::vector<int>& ids) {
    commit([&](Manifest& manifest) { manifest.pages = inOrder(manifest, ids); });
}

void PageDocument::setPlan(const DocumentPlan& plan) {
    commit([&](Manifest& manifest) { manifest.plan = plan; });
}

void PageDocument::markSaved(const std::string& target) {
    commit([&target](Manifest& manifest) {
        manifest.saved = std::time(nullptr);
        manifest.plan.target = target.empty() ? manifest.plan.target : target;
    });
}

} // namespace doccam::host
