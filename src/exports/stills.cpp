// Taking and saving stills, and merging pictures.
#include "base/guarded.h"
#include "output/pdf/document_steps.h"
#include "output/still/save_image.h"
#include "output/still/still.h"
#include "output/still/still_request.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <string>

using doccam::guarded;
using doccam::state;

namespace {

std::string textOf(const char* path) {
    return path != nullptr ? path : "";
}

} // namespace

int captureImage(const char* path) {
    return guarded("captureImage", -1, [=] { return doccam::requestStill(state().session, path); });
}

int capture(char* path, int /*format*/, int cropMode, cv::Mat img) {
    doccam::saveStill(doccam::prepareStill(textOf(path), cropMode, img, state()), state().settings);
    return 0;
}

int SaveImage(char* path, cv::Mat img) {
    doccam::savePage(textOf(path), img, state().settings);
    return 0;
}

int TempImgToPdf(char* path, cv::Mat img) {
    doccam::writeOnePagePdf(textOf(path), img, state().settings);
    return 0;
}

int MergeImages(const char* path, int /*mergeMode*/, int /*reserved*/, bool deleteSources) {
    return guarded("MergeImages", -2,
                   [=] { return doccam::mergeQueued(state().documents, path, deleteSources); });
}
