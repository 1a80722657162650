#include "pages/page_renderer.h"

#include "host/failure.h"
#include "pages/rendering.h"
#include "pictures/writing.h"

#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

namespace doccam::host {

std::pair<std::vector<unsigned char>, cv::Size> makePage(const PageDocument& document,
                                                         const KeptPage& page) {
    const cv::Mat frame = document.frame(page.frame);
    if (page.origin.finished) {
        return {document.file(page.frame), frame.size()};
    }
    const Page made = renderPage(frame, page.recipe);
    return {encodePage("page.jpg", *made, page.recipe.quality), {made->width, made->height}};
}

PageRenderer::PageRenderer(const PageDocument& document, std::string folder)
  : document_(document)
  , folder_(std::move(folder))
  , thread_([this] { run(); }) {}

PageRenderer::~PageRenderer() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void PageRenderer::begin(const KeptPage& page) {
    const std::lock_guard lock(mutex_);
    if (works_.try_emplace(page.frame, Work{.page = page}).second) {
        waiting_.push_back(page.frame);
        changed_.notify_all();
    }
}

PageFile PageRenderer::finish(const KeptPage& page) {
    begin(page);
    std::unique_lock lock(mutex_);
    const Work& work = works_.at(page.frame);
    changed_.wait(lock, [&work] { return work.done; });
    if (work.failure) {
        std::rethrow_exception(work.failure);
    }
    return work.file;
}

void PageRenderer::run() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
        if (ending_) {
            return;
        }
        Work& work = works_.at(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        make(work);
        lock.lock();
        work.done = true;
        changed_.notify_all();
    }
}

void PageRenderer::make(Work& work) const try {
    const auto [bytes, size] = makePage(document_, work.page);
    const std::string_view extension = extensionOf(bytes);
    const std::string stem = std::filesystem::path(work.page.frame).stem().string();
    work.file = {folder_ + "/" + stem + std::string(extension), size};
    if (!writeBytes(work.file.path, bytes)) {
        throw Failure(kFileFailed, "A page could not be written beside the PDF; look whether the "
                                   "disk is full.");
    }

} catch (...) {

    work.failure = std::current_exception();
}

} // namespace doccam::host
