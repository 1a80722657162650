// Processing the queue of files to merge into one picture.
#pragma once

#include "state/parts.h"

namespace doccam {

// Reads the queued files, empties the queue and, with deleteSources, deletes them if a file is at
// path. Composes nothing. Returns 0; -1 for fewer than two files, -2 if no file is at path.
int mergeQueued(record::Documents& documents, const record::Settings& settings, const char* path,
                int mergeMode, bool deleteSources);

} // namespace doccam
