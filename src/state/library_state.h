// The record of everything the library keeps between two calls, divided by owner.
#pragma once

#include "state/discovery.h"
#include "state/documents.h"
#include "state/session.h"
#include "state/settings.h"
#include "state/sheet.h"
#include "state/unused.h"
#include "state/view.h"

namespace doccam {

using record::kBufferCount;
using record::kCropToSheet;
using record::kNoCodeRequest;
using record::kNoProcess;

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
