// The tray: the pages taken so far, in the user's order, and PDFs of them.
#pragma once

#include "host/work_folders.h"
#include "serve/commands/command_queue.h"
#include "serve/owned_thread.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace doccam::serve {

struct Page {
    int id = 0;      // never reused
    int version = 1; // grows when the picture changes
    int width = 0, height = 0;
    int quarterTurns = 0;           // clockwise, relative to the picture as taken
    std::vector<std::string> codes; // texts found on the page
};

// A request that the tray cannot serve: no room, no picture.
struct TrayError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct NoSuchPage : TrayError {
    using TrayError::TrayError;
};

struct BadOrder : TrayError {
    using TrayError::TrayError;
};

// Files are in a private folder under names chosen by the store. One thread changes the tray; any
// thread reads it.
class PageStore {
  public:
    // Creates its folder in the temporary folder. Throws host::Failure.
    PageStore();

    static constexpr std::size_t kMaximumPages = 100;

    // The folder of all its files.
    const std::filesystem::path& folder() const { return folder_.path(); }

    // The path to write the next page to, as a JPEG, before add().
    std::string incoming() const;
    // Throws TrayError if the tray is full. Call before a page is taken.
    void requireRoom() const;

    // Adds the incoming file as the last page. Throws TrayError if it is not a picture.
    Page add(const std::vector<std::string>& codes);
    // Both throw NoSuchPage. Turns a page by quarter turns, 1 clockwise, -1 counter-clockwise.
    void turn(int id, int quarterTurns);
    void remove(int id);
    // ids must contain each page once; otherwise throws BadOrder and changes nothing.
    void reorder(const std::vector<int>& ids);

    std::vector<Page> pages() const;
    // Paths of a page's files; none if there is no such page.
    std::optional<std::string> picture(int id) const;
    std::optional<std::string> thumbnail(int id) const;
    // Links or copies of all pictures in order, in a new folder, which the caller removes. They do
    // not change when a page is turned or deleted. Throws TrayError.
    std::vector<std::string> copyPictures(const std::filesystem::path& folder) const;
    // A new path to write a document of all pages to. One thread.
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

// Makes one document at a time on its own thread: the library allows no more, and each takes as
// much memory as its pages. Any thread may call make().
class DocumentMaker {
  public:
    // Requests that may wait while a document is made.
    static constexpr std::size_t kMaximumWaiting = 3;

    explicit DocumentMaker(PageStore& pages);
    ~DocumentMaker();

    // Waits for a PDF of the pages as they are when it is started, and returns its path; the caller
    // removes it. Throws Busy if too many wait or after close(), TrayError if none can be made.
    std::string make();

    // Drops waiting requests and refuses new ones.
    void close() { queue_.close(); }

  private:
    std::string write();

    PageStore& pages_;
    CommandQueue queue_;
    std::jthread thread_;
};

} // namespace doccam::serve
