#include "serve/tray/page_store.h"

#include "host/failure.h"

#include <algorithm>
#include <utility>

namespace doccam::serve {
namespace {

// What the document refuses, in the tray's terms.
template <typename Change>
void changing(const Change& change) {
    try {
        change();
    } catch (const host::Failure& failure) {
        switch (failure.code()) {
        case host::kNothingFound:
            throw NoSuchPage(failure.what());
        case host::kUsage:
            throw BadChange(failure.what());
        default:
            throw TrayError(failure.what());
        }
    }
}

void refuseUnmakeable(const host::Recipe& recipe, cv::Size frame) {
    if (frame.empty()) {
        throw TrayError("the page is damaged on the disk; delete it");
    }
    try {
        host::sizeOfPage(recipe, frame);
    } catch (const host::Failure&) {
        throw BadChange("the corners enclose no page");
    }
}

bool isSame(const Page& one, const Page& other) {
    return one.kept.id == other.kept.id && one.version() == other.version();
}

} // namespace

PageStore::PageStore(const TrayDocument& document)
  : document_(document.pages())
  , folder_(document.folder())
  , pictures_(document_, folder_.string()) {
    for (const auto& pages : {document_.pages(), document_.removedPages()}) {
        for (const host::KeptPage& page : pages) {
            noteFrame(page);
        }
    }
}

void PageStore::noteFrame(const host::KeptPage& page) {
    cv::Size size = document_.frameSize(page.frame);
    try {
        host::sizeOfPage(page.recipe, size);
    } catch (const host::Failure&) { // a forged recipe
        size = {};
    }
    const std::lock_guard lock(mutex_);
    frames_[page.frame] = size;
}

void PageStore::requireRoom() const {
    if (document_.pages().size() >= kMaximumPages) {
        throw TrayError("the tray is full: it holds " + std::to_string(kMaximumPages) +
                        " pages; download and delete some");
    }
}

Page PageStore::add(const host::PageDraft& draft, const CodeReading& readCodes) {
    requireRoom();
    host::KeptPage page{.recipe = draft.recipe, .origin = draft.origin};
    try {
        page.frame = document_.keep(draft.frame);
        pictures_.forget(page); // of a frame that had the name, and became no page
        noteFrame(page);
        page.origin.codes = readCodes(pictures_.picture(page)->path);
        return described(document_.add(page.frame, page.recipe, page.origin));
    } catch (const host::Failure& failure) {
        throw TrayError(failure.what());
    }
}

void PageStore::change(int id, const host::Recipe& recipe) {
    const Page before = page(id);
    refuseUnmakeable(recipe, before.frame);
    changing([&] { document_.change(id, recipe); });
    pictures_.forget(before.kept);
    pictures_.begin(page(id).kept);
}

void PageStore::remove(int id) {
    const Page before = page(id);
    changing([&] { document_.setAside(id); });
    pictures_.forget(before.kept);
}

void PageStore::restore(int id) {
    requireRoom();
    changing([&] { document_.restore(id); });
}

void PageStore::reorder(const std::vector<int>& ids) {
    try {
        changing([&] { document_.reorder(ids); });
    } catch (const NoSuchPage&) {
        throw BadChange("the order must name each page once");
    }
}

void PageStore::noteSaved(const std::vector<Page>& saved) {
    const std::vector<Page> now = pages();
    if (std::equal(now.begin(), now.end(), saved.begin(), saved.end(), isSame)) {
        changing([&] { document_.markSaved(); });
    }
}

Page PageStore::described(const host::KeptPage& kept) const {
    const std::lock_guard lock(mutex_);
    const auto frame = frames_.find(kept.frame);
    if (frame == frames_.end() || frame->second.empty()) {
        return {.kept = kept};
    }
    return {
        .kept = kept, .frame = frame->second, .size = host::sizeOfPage(kept.recipe, frame->second)};
}

std::vector<Page> PageStore::described(const std::vector<host::KeptPage>& kept) const {
    std::vector<Page> pages;
    pages.reserve(kept.size());
    for (const host::KeptPage& page : kept) {
        pages.push_back(described(page));
    }
    return pages;
}

std::vector<Page> PageStore::pages() const {
    return described(document_.pages());
}

std::vector<Page> PageStore::removedPages() const {
    return described(document_.removedPages());
}

Page PageStore::page(int id) const {
    const std::vector<host::KeptPage> all = document_.pages();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [id](const host::KeptPage& page) { return page.id == id; });
    if (found == all.end()) {
        throw NoSuchPage("there is no page " + std::to_string(id));
    }
    return described(*found);
}

} // namespace doccam::serve
