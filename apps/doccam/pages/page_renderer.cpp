#include "pages/page_renderer.h"

#include "documents/paper/density_stamp.h"
#include "host/failure.h"
#include "pages/calibrated_size.h"
#include "pages/page_engine.h"
#include "pages/rendering.h"
#include "pictures/writing.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace doccam::host {

MadePage makePage(const PageDocument& document, const KeptPage& page) {
    const cv::Mat frame = document.frame(page.frame);
    const PaperOptions paper = document.plan().paper;
    if (page.origin.finished) {
        return {document.file(page.frame), frame.size(),
                sizePage(frame.size(), {.options = paper})};
    }
    if (page.recipe.corners && !isSound(*page.recipe.corners)) {
        throw DamagedFrame(page.frame);
    }
    const Page made = renderPage(frame, page.recipe);
    const cv::Size size(made->width, made->height);
    const SizedPage sized = sizePage(
        size, {.options = paper, .calibrated = calibratedSize(page.recipe, page.origin.desk)});
    auto bytes = encodePage("page.jpg", *made, page.recipe.quality);
    stampDensity(bytes, size, sized);
    return {std::move(bytes), size, sized};
}

PageFile::~PageFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

PageRenderer::PageRenderer(const PageDocument& document, std::string folder)
  : document_(document)
  , folder_(std::move(folder))
  , thread_([this] { run(); }) {}

PageRenderer::~PageRenderer() {
    close();
    thread_.join();
}

void PageRenderer::begin(const KeptPage& page) {
    const std::lock_guard lock(mutex_);
    begun(page);
}

// Call with the lock held.
std::shared_ptr<PageRenderer::Work> PageRenderer::begun(const KeptPage& page) {
    std::shared_ptr<Work>& work = works_[pictureName(page)];
    if (!work) {
        work = std::make_shared<Work>(Work{.page = page});
        waiting_.push_back(work);
        changed_.notify_all();
    }
    return work;
}

std::shared_ptr<const PageFile> PageRenderer::finish(const KeptPage& page) {
    std::unique_lock lock(mutex_);
    const std::shared_ptr<Work> work = begun(page);
    changed_.wait(lock, [&] { return work->done || closed_; });
    if (work->failure) {
        std::rethrow_exception(work->failure);
    }
    if (!work->done) {
        throw Failure(kFileFailed, "The page is not made, as the program ends.");
    }
    return work->file;
}

void PageRenderer::forget(const KeptPage& page) {
    const std::lock_guard lock(mutex_);
    works_.erase(pictureName(page));
}

void PageRenderer::close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
}

void PageRenderer::run() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return closed_ || !waiting_.empty(); });
        if (closed_) {
            return;
        }
        const std::shared_ptr<Work> work = std::move(waiting_.front());
        waiting_.pop_front();
        if (work.use_count() == 1) {
            continue; // forgotten
        }
        lock.unlock();
        make(*work);
        lock.lock();
        work->done = true;
        if (work->failure) {
            forgetFailed(work);
        }
        changed_.notify_all();
    }
}

// What failed may succeed when it is wanted again, as when the disk is no longer full.
void PageRenderer::forgetFailed(const std::shared_ptr<Work>& work) {
    const auto found = works_.find(pictureName(work->page));
    if (found != works_.end() && found->second == work) {
        works_.erase(found);
    }
}

void PageRenderer::make(Work& work) const try {
    const MadePage made = makePage(document_, work.page);
    const std::string path = folder_ + "/" + pictureName(work.page) + extensionOf(made.bytes);
    auto file = std::make_shared<const PageFile>(path, made.size, made.sized);
    if (!writeBytes(path, made.bytes)) {
        throw Failure(kFileFailed, "A page could not be written; look whether the disk is full.");
    }
    work.file = std::move(file);

} catch (...) {

    work.failure = std::current_exception();
}

std::string pictureName(const KeptPage& page) {
    const std::string stem = std::filesystem::path(page.frame).stem().string();
    return page.changes == 0 ? stem : stem + "-" + std::to_string(page.changes);
}

} // namespace doccam::host
