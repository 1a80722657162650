// A PDF document made step by step, and the queues of files. One thread at a time.
#pragma once

#include "state/parts.h"

#include <hpdf.h>

#include <string>
#include <vector>

namespace doccam {

// Starts the document for the file at path, dropping an unfinished one; does nothing for null.
void startDocument(record::Documents& documents, const char* path);

// Adds a page; does nothing without a document.
void addPageToDocument(record::Documents& documents, const char* picture);

// Saves the document, unless it has failed, and ends it.
void endDocument(record::Documents& documents);

// Prints a libharu error and makes the document fail.
void failDocument(record::Documents& documents, HPDF_STATUS number, HPDF_STATUS detail);

// Appends path to queue if the file exists. Returns 0, or -1 if it does not.
int enqueueFile(std::vector<std::string>& queue, const char* path);

// Makes a document at path of the queued files that exist, empties the queue and, if set, deletes
// them. Returns 0; -1 for an empty queue; -2, deleting nothing, if the document was not made.
int combineQueued(record::Documents& documents, const char* path, bool deleteSources);

// Reads the files queued for merging, composes nothing, empties the queue and, if set, deletes the
// files. Returns 0; -1 for fewer than two files; -2, deleting nothing, if no file is at path.
int mergeQueued(record::Documents& documents, const char* path, bool deleteSources);

} // namespace doccam
