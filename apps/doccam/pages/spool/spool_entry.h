// A document as it is found in the spool.
#pragma once

#include "pages/spool/manifest.h"
#include "pages/spool/private_folder.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

struct SpoolEntry {
    std::string name; // the time of its creation in UTC, and random letters: sorted by time
    std::filesystem::path folder;
    bool inUse = false; // by a running process
    std::uint64_t bytes = 0;
    std::optional<Manifest> manifest{}; // none: it is damaged
    std::vector<std::string>
        damaged{}; // frames of pages, missing, evidently none, or with bad corners

    bool isSaved() const { return manifest && manifest->saved != 0 && !inUse; }

    // Nothing would be lost with it.
    bool isEmpty() const {
        return manifest && manifest->pages.empty() && manifest->removed.empty();
    }

    // It is not saved, and nobody uses it.
    bool isLeft() const { return manifest && manifest->saved == 0 && !inUse; }
};

// Names of documents in the spool: no other entry there has one.
bool isDocumentName(const std::string& name);
std::string newDocumentName();

// The document of that name in the spool, whose path is given.
SpoolEntry describedEntry(const PrivateFolder& spool, const std::filesystem::path& path,
                          const std::string& name);

} // namespace doccam::host
