#include "serve/tray/document_maker.h"

#include <doccam/doccam.h>

#include <filesystem>
#include <system_error>

namespace doccam::serve {
namespace {

// Copies of the pages' files, removed with their folder.
struct Copies {
    std::filesystem::path folder;

    ~Copies() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
};

} // namespace

DocumentMaker::DocumentMaker(PageStore& pages)
  : pages_(pages)
  , queue_(kMaximumWaiting, "several PDFs are being made already; try again in some seconds")
  , thread_(ownedThread([this] { queue_.serve(); })) {}

DocumentMaker::~DocumentMaker() {
    close();
}

std::string DocumentMaker::make() {
    return queue_.order([this] { return write(); });
}

std::string DocumentMaker::write() {
    std::string path = pages_.newDocument();
    const Copies copies{path + ".pages"};
    for (const std::string& picture : pages_.copyPictures(copies.folder)) {
        AddImageFileToPDF(picture.c_str());
    }
    if (CombineToPDF(path.c_str(), false) != DOCCAM_OK) {
        throw TrayError("the PDF could not be made; take a page first, and see that the disk is "
                        "not full");
    }
    return path;
}

} // namespace doccam::serve
