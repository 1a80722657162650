#include "documents/scan_document.h"

#include "host/failure.h"
#include "host/own_output.h"

#include <algorithm>
#include <filesystem>

namespace doccam::host {
namespace {

// They would otherwise fill the spool unnoticed.
void tellOfUnsaved(const Spool& spool) {
    const auto entries = spool.list();
    const auto count = std::count_if(entries.begin(), entries.end(), [](const SpoolEntry& entry) {
        return entry.isLeft() ? entry.manifest->plan.taker == PageTaker::kScan
                              : !entry.inUse && !entry.manifest;
    });
    if (count > 0) {
        complain("The spool has " + std::to_string(count) +
                 (count == 1 ? " document" : " documents") +
                 " not saved yet; doccam spool list shows more" +
                 (spool.newestUnsaved(PageTaker::kScan).empty()
                      ? "."
                      : ", doccam scan --resume goes on with the newest."));
    }
}

} // namespace

ScanDocument::ScanDocument(const ScanOptions& options) {
    if (options.noSpool) {
        file_.emplace(options.target, options.force);
        pages_ = PageDocument::inFolder(folderIn(*file_, "frames"), options.documentPlan());
    } else {
        open(options);
    }
    renderer_ = std::make_unique<PageRenderer>(*pages_, folderIn(*file_, "pages"));
}

void ScanDocument::open(const ScanOptions& options) {
    if (!options.resume) {
        file_.emplace(options.target, options.force);
        spool_.emplace();
        tellOfUnsaved(*spool_);
        pages_ = spool_->create(options.documentPlan());
        return;
    }
    spool_.emplace();
    pages_ = openSpooled(*spool_, "", PageTaker::kScan);
    const std::string target = targetFor(*pages_, options.target);
    file_.emplace(target, options.force);
    ScanOptions adopting = options;
    adopting.adopt(pages_->plan());
    DocumentPlan plan = adopting.documentPlan();
    plan.target =
        options.targetPasses ? pages_->plan().target : std::filesystem::absolute(target).string();
    pages_->setPlan(plan);
}

ScanDocument::~ScanDocument() {
    const bool isEmpty = pages_ && pages_->pages().empty();
    const std::string name = pages_ ? pages_->name() : "";
    renderer_.reset();
    pages_.reset();
    if (!spool_ || !isEmpty) {
        return;
    }
    try {
        spool_->clear(name);
    } catch (const Failure&) { // it has nothing to lose
    }
}

std::string ScanDocument::keptSentence() const {
    const std::size_t count = pages_->pages().size();
    if (!spool_ || count == 0) {
        return "";
    }
    const std::string taken = count == 1 ? "The page taken is kept"
                                         : "The " + std::to_string(count) + " pages taken are kept";
    return taken + "; doccam scan --resume goes on, doccam spool resume saves " +
           (count == 1 ? "it." : "them.");
}

std::unique_ptr<PageDocument> openSpooled(const Spool& spool, const std::string& name,
                                          std::optional<PageTaker> taker) {
    const std::string chosen = name.empty() ? spool.newestUnsaved(taker) : name;
    if (chosen.empty()) {
        throw Failure(kNothingFound, "The spool has no unsaved document that can be gone on with; "
                                     "doccam spool list shows which there are.");
    }
    return spool.open(chosen);
}

std::string targetFor(const PageDocument& document, const std::string& named) {
    std::string target = named.empty() ? document.plan().target : named;
    if (target.empty()) {
        throw Failure(kUsage, "The document " + document.name() +
                                  " has no file name yet; name the PDF to write.");
    }
    return target;
}

std::string folderIn(const OutputFile& file, const std::string& name) {
    std::string folder = file.part(name);
    std::error_code ignored;
    std::filesystem::create_directory(folder, ignored);
    return folder;
}

} // namespace doccam::host
