// The document of the tray's pages, which outlives the server until it is saved.
#pragma once

#include "host/work_folders.h"
#include "pages/spool/spool.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace doccam::serve {

// Where the document and what is made of its pages lie.
class TrayPlace {
  public:
    // Keeps the document in the spool, or only in the private folder. Throws host::Failure.
    explicit TrayPlace(bool spooled);

    // A private folder, removed with the object.
    const std::filesystem::path& folder() const { return folder_.path(); }

    // Null without one.
    const host::Spool* spool() const { return spool_ ? &*spool_ : nullptr; }

  private:
    host::WorkFolder folder_;
    std::optional<host::Spool> spool_;
};

class TrayDocument {
  public:
    // Goes on with the newest document that a server has left unsaved, or begins one. Throws
    // host::Failure. The place must outlive the object.
    explicit TrayDocument(const TrayPlace& place);

    // A document without pages leaves nothing.
    ~TrayDocument();
    TrayDocument(const TrayDocument&) = delete;
    TrayDocument& operator=(const TrayDocument&) = delete;

    host::PageDocument& pages() const { return *pages_; }

    // For files made of the pages.
    const std::filesystem::path& folder() const { return place_.folder(); }

    // What a new server shows again, and what the end of this one leaves; empty if it is nothing.
    std::string takenUpSentence() const;
    std::string leftSentence() const;

  private:
    const TrayPlace& place_;
    std::unique_ptr<host::PageDocument> pages_;
};

} // namespace doccam::serve
