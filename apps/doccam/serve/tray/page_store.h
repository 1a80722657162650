// The tray: the pages taken so far, in the order that the user gave them.
#pragma once

#include "host/work_folders.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace doccam::serve {

struct Page {
    int id = 0;      // never used again
    int version = 1; // grows when the picture changes
    int width = 0, height = 0;
    int quarterTurns = 0;           // clockwise, of the picture as it was taken
    std::vector<std::string> codes; // texts found on the page
};

// A wish that the tray cannot fulfil: no room, no picture.
struct TrayError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct NoSuchPage : TrayError {
    using TrayError::TrayError;
};

struct BadOrder : TrayError {
    using TrayError::TrayError;
};

// Files lie in a private folder under names of the store's own making. One thread changes the tray;
// any thread looks at it.
class PageStore {
  public:
    // Its folder is made where temporary files lie. Throws host::Failure.
    PageStore();

    static constexpr std::size_t kMostPages = 100;

    // Where all its files lie.
    const std::filesystem::path& folder() const { return folder_.path(); }

    // Where the next page is to be written before add(), a JPEG.
    std::string incoming() const;
    // Throws TrayError when the tray is full. To be asked before a page is taken.
    void requireRoom() const;

    // Takes the incoming file as the last page. Throws TrayError when it is no picture.
    Page add(const std::vector<std::string>& codes);
    // Both throw NoSuchPage. Turns a page by quarter turns, 1 clockwise, -1 counter-clockwise.
    void turn(int id, int quarterTurns);
    void remove(int id);
    // ids names each page once. Throws BadOrder, and changes nothing, otherwise.
    void reorder(const std::vector<int>& ids);

    std::vector<Page> pages() const;
    // Paths of a page's files; none when there is no such page.
    std::optional<std::string> picture(int id) const;
    std::optional<std::string> thumbnail(int id) const;
    // Links or copies of all pictures in their order, in a new folder, which the caller removes:
    // they stay as they are when a page is turned or deleted. Throws TrayError.
    std::vector<std::string> copyPictures(const std::filesystem::path& folder) const;
    // Where a document of all pages is to be written; a new name each time. One thread.
    std::string newDocument();

  private:
    std::string pathOf(const Page& page, const char* kind) const;
    const Page& at(int id) const;
    void removeFiles(const Page& page) const;

    host::WorkFolder folder_;
    mutable std::mutex mutex_;
    std::vector<Page> pages_;
    int lastId_ = 0;
    int lastDocument_ = 0;
};

} // namespace doccam::serve
