// The document of a scan: new or resumed, in the spool or in the PDF's work folder.
#pragma once

#include "host/output_file.h"
#include "pages/page_renderer.h"
#include "pages/spool/spool.h"
#include "scan/scan_options.h"

#include <memory>
#include <optional>
#include <string>

namespace doccam::host {

class ScanDocument {
  public:
    // Claims the file and opens the document. Throws Failure.
    explicit ScanDocument(const ScanOptions& options);

    // A document without pages leaves nothing.
    ~ScanDocument();
    ScanDocument(const ScanDocument&) = delete;
    ScanDocument& operator=(const ScanDocument&) = delete;

    PageDocument& pages() { return *pages_; }

    PageRenderer& renderer() { return *renderer_; }

    OutputFile& file() { return *file_; }

    // What stays in the spool and what can be done with it; empty if nothing does.
    std::string keptSentence() const;

  private:
    void open(const ScanOptions& options);
    void openUnspooled(const ScanOptions& options);

    std::optional<Spool> spool_;
    std::optional<OutputFile> file_;
    std::unique_ptr<PageDocument> pages_;
    std::unique_ptr<PageRenderer> renderer_;
};

// Opens a document of the spool; for an empty name the newest unsaved one, of any taker unless one
// is given. Throws Failure.
std::unique_ptr<PageDocument> openSpooled(const Spool& spool, const std::string& name,
                                          std::optional<PageTaker> taker = std::nullopt);

// The file to save the document as: as named, or else as it was to be. Throws Failure.
std::string targetFor(const PageDocument& document, const std::string& named);

// A new folder in the work folder of file.
std::string folderIn(const OutputFile& file, const std::string& name);

} // namespace doccam::host
