// The tray: the pages of its document with their sizes and pictures.
#pragma once

#include "pages/spool/page_document.h"
#include "scan/page_source.h"
#include "serve/tray/page_pictures.h"
#include "serve/tray/tray_document.h"

#include <opencv2/core/types.hpp>

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace doccam::serve {

struct Page {
    host::KeptPage kept;
    cv::Size frame{}; // 0 x 0 if it is damaged
    cv::Size size{};  // of the picture, likewise

    // Grows when the picture changes.
    int version() const { return kept.changes + 1; }
};

// A request that the tray cannot serve: no room, a full disk.
struct TrayError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct NoSuchPage : TrayError {
    using TrayError::TrayError;
};

// An order or a recipe that makes no sense.
struct BadChange : TrayError {
    using TrayError::TrayError;
};

// One thread changes the tray; any thread reads it. A change that returns is on disk, one that
// throws has changed nothing; TrayError may mean that it cannot be written.
class PageStore {
  public:
    explicit PageStore(const TrayDocument& document);

    static constexpr std::size_t kMaximumPages = 100;

    // Throws TrayError if the tray is full. Call before a page is taken.
    void requireRoom() const;

    // Adds the draft as the last page, with the texts that readCodes finds in the picture at a
    // path.
    using CodeReading = std::function<std::vector<std::string>(const std::string& path)>;
    Page add(const host::PageDraft& draft, const CodeReading& readCodes);

    // These throw NoSuchPage. A page is made of its frame anew; throws BadChange if the corners
    // enclose no page.
    void change(int id, const host::Recipe& recipe);
    // A removed page can be restored to where it was until 20 others have been removed.
    void remove(int id);
    void restore(int id);
    // ids must contain each page once; otherwise throws BadChange.
    void reorder(const std::vector<int>& ids);

    // All these pages, as they are, are in a document that the user has.
    void noteSaved(const std::vector<Page>& pages);

    std::vector<Page> pages() const;
    // The one removed last is the last.
    std::vector<Page> removedPages() const;
    Page page(int id) const; // throws NoSuchPage

    // The file of a page's frame. Throws host::DamagedFrame.
    host::FrameFile frame(const Page& page) const { return document_.file(page.kept.frame); }

    PagePictures& pictures() { return pictures_; }

    // For files made of the pages.
    const std::filesystem::path& folder() const { return folder_; }

  private:
    Page described(const host::KeptPage& kept) const;
    std::vector<Page> described(const std::vector<host::KeptPage>& kept) const;
    void noteFrame(const host::KeptPage& page);

    host::PageDocument& document_;
    const std::filesystem::path folder_;
    mutable std::mutex mutex_;
    std::map<std::string, cv::Size> frames_; // the sizes of frames by name
    PagePictures pictures_;
};

} // namespace doccam::serve
