// The documents in the making of this user, kept until they are saved.
#pragma once

#include "pages/spool/page_document.h"
#include "pages/spool/spool_entry.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

struct SpoolLimits {
    std::uint64_t bytes = std::uint64_t{4} << 30; // of all documents
    std::chrono::seconds savedFor{24 * 60 * 60};  // until a saved one is cleared
};

// Those set by the environment: DOCCAM_SPOOL_MEGABYTES. Throws Failure for a value that is not an
// integer from 1 to 1000000.
SpoolLimits spoolLimits();

// A folder per document in $XDG_STATE_HOME/doccam/spool. Any process of the user may have one.
class Spool {
  public:
    // Creates its folder, and clears what was saved long enough ago. Throws Failure if there is no
    // usable place for it.
    explicit Spool(const SpoolLimits& limits = spoolLimits());

    const std::filesystem::path& path() const { return path_; }

    const SpoolLimits& limits() const { return limits_; }

    // The oldest first. Entries that are no documents are left out.
    std::vector<SpoolEntry> list() const;

    // A new document, in use until the object is destroyed. Throws Failure. The spool may end
    // before its documents.
    std::unique_ptr<PageDocument> create(const DocumentPlan& plan) const;

    // The document of that name. Throws Failure if there is none, or it is in use or damaged.
    std::unique_ptr<PageDocument> open(const std::string& name) const;

    // The newest document with pages, of any taker unless one is given, that is neither saved nor
    // in use nor damaged; empty if there is none.
    std::string newestUnsaved(std::optional<PageTaker> taker = std::nullopt) const;

    // Opens the taker's newest document that it has left with pages, also removed ones; null if
    // there is none.
    std::unique_ptr<PageDocument> takeUp(PageTaker taker) const;

    // Removes a document with its frames. Throws Failure if there is none or it is in use.
    void clear(const std::string& name) const;

  private:
    void clearOld() const;
    void makeRoom(std::uint64_t bytes) const;
    bool clearIfIdle(const std::string& name) const;
    std::unique_ptr<PageDocument> documentOf(const std::string& name, PrivateFolder folder,
                                             UniqueFd lock, Manifest manifest) const;

    std::filesystem::path path_;
    SpoolLimits limits_;
};

} // namespace doccam::host
