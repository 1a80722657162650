// PDF documents.
#include "base/guarded.h"
#include "output/pdf/document_steps.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

using doccam::guarded;
using doccam::state;

void error_handler(unsigned long error_no, unsigned long detail_no, void* /*user_data*/) {
    doccam::failDocument(state().documents, error_no, detail_no);
}

int pdf_start(const char* path) {
    return guarded("pdf_start", 0,
                   [=] { return doccam::startDocument(state().documents, path), 0; });
}

int pdf_addPage(const char* imagePath) {
    return guarded("pdf_addPage", 0,
                   [=] { return doccam::addPageToDocument(state().documents, imagePath), 0; });
}

int pdf_end() {
    doccam::endDocument(state().documents);
    return 0;
}

int AddImageFileToPDF(const char* path) {
    return guarded("AddImageFileToPDF", -1,
                   [=] { return doccam::enqueueFile(state().documents.pdf_filelist, path); });
}

int AddImagePath(const char* path) {
    return guarded("AddImagePath", -1,
                   [=] { return doccam::enqueueFile(state().documents.img_filelist, path); });
}

int CombineToPDF(const char* path, bool deleteSources) {
    return guarded("CombineToPDF", -2,
                   [=] { return doccam::combineQueued(state().documents, path, deleteSources); });
}
