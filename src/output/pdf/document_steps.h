// The one PDF document that a host makes step by step, and the queues of files for others.
//
// One thread at a time.
#pragma once

#include "state/parts.h"

#include <hpdf.h>

#include <string>
#include <vector>

namespace doccam {

// Begins the document for the file at path and drops one that was begun; nothing for null.
void startDocument(record::Documents& documents, const char* path);

// Adds a page; nothing without a document.
void addPageToDocument(record::Documents& documents, const char* picture);

// Saves the document, unless an error has spoilt it, and ends it.
void endDocument(record::Documents& documents);

// Prints an error of libharu's and spoils the document.
void failDocument(record::Documents& documents, HPDF_STATUS number, HPDF_STATUS detail);

// Appends path to queue if there is a file. 0, or -1 when there is none.
int enqueueFile(std::vector<std::string>& queue, const char* path);

// Makes a document at path of the queued files that still exist and empties the queue; with
// deleteSources they are deleted then. 0; -1 for an empty queue; -2, and nothing is deleted, after
// an error or when no file is at path.
int combineQueued(record::Documents& documents, const char* path, bool deleteSources);

} // namespace doccam
