#include "serve/tray/tray_document.h"

#include "host/failure.h"

#include <system_error>

namespace doccam::serve {
namespace {

namespace fs = std::filesystem;

// Empty if there is none.
fs::path temporaryPlace() {
    std::error_code ignored;
    return fs::temp_directory_path(ignored);
}

std::string counted(std::size_t pages) {
    return pages == 1 ? "The page" : "The " + std::to_string(pages) + " pages";
}

} // namespace

TrayPlace::TrayPlace(bool spooled)
  : folder_(temporaryPlace()) {
    if (folder_.path().empty()) {
        throw host::Failure(host::kFileFailed,
                            "No folder for the pages can be made where temporary files lie; let "
                            "TMPDIR name another place.");
    }
    if (spooled) {
        spool_.emplace();
    }
}

TrayDocument::TrayDocument(const TrayPlace& place)
  : place_(place) {
    const host::DocumentPlan plan{.taker = host::PageTaker::kServe};
    if (const host::Spool* const spool = place.spool()) {
        pages_ = spool->takeUp(plan.taker);
        pages_ = pages_ ? std::move(pages_) : spool->create(plan);
        return;
    }
    const fs::path frames = place.folder() / "frames";
    std::error_code ignored;
    fs::create_directory(frames, ignored);
    pages_ = host::PageDocument::inFolder(frames.string(), plan);
}

TrayDocument::~TrayDocument() {
    if (place_.spool() == nullptr || !pages_->pages().empty()) {
        return;
    }
    const std::string name = pages_->name();
    pages_.reset();
    try {
        place_.spool()->clear(name);
    } catch (const host::Failure&) { // the next server clears it
    }
}

std::string TrayDocument::takenUpSentence() const {
    const std::size_t count = pages_->pages().size();
    return count == 0 ? ""
                      : counted(count) + " that an earlier server left unsaved " +
                            (count == 1 ? "is" : "are") + " shown again.";
}

std::string TrayDocument::leftSentence() const {
    const std::size_t count = pages_->pages().size();
    const std::string them = count == 1 ? "it" : "them";
    return place_.spool() == nullptr || count == 0 || pages_->isSaved()
               ? ""
               : counted(count) + " in the tray " + (count == 1 ? "is" : "are") +
                     " kept; doccam serve shows " + them +
                     " again, doccam spool resume --as saves " + them + ".";
}

} // namespace doccam::serve
