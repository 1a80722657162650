// Settling the queue of files to be merged into one picture.
#pragma once

#include "state/parts.h"

namespace doccam {

// Reads the queued files, empties the queue and, with deleteSources, deletes them once a file is at
// path. Composes nothing. 0; -1 for fewer than two files, -2 when no file is at path.
int mergeQueued(record::Documents& documents, const record::Settings& settings, const char* path,
                int mergeMode, bool deleteSources);

} // namespace doccam
