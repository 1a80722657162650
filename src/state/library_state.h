// The record of everything the library keeps between two calls, divided by owner.
#pragma once

#include "state/discovery.h"
#include "state/documents.h"
#include "state/session.h"
#include "state/settings.h"
#include "state/sheet.h"
#include "state/view.h"

#include <string>
#include <vector>

struct CvSeq;

namespace doccam {

namespace record {

// Declared fields that nothing reads.
struct Unused {
    bool isMjpegMode = true;
    std::vector<int> areaList;
    std::vector<CvSeq*> cvSeqList;
    int ManualCutX = 0, ManualCutY = 0, ManualCutW = 0, ManualCutH = 0;
    std::vector<std::string> addFileList;
};

} // namespace record

using record::kBufferCount;
using record::kContractEngine;
using record::kCropToSheet;
using record::kNoCodeRequest;
using record::kNoProcess;
using record::kPageEngine;

// Field names are fixed.
struct LibraryState {
    record::Settings settings;
    record::Discovery discovery;
    record::Session session;
    record::View view;
    record::Sheet sheet;
    record::Documents documents;
    record::Unused unused;
};

// The one instance.
LibraryState& state();

} // namespace doccam
