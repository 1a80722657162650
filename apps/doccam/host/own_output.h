// The host's own standard output, apart from the lines that the library prints there.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>

namespace doccam::host {

using Json = nlohmann::ordered_json;

// Sends what the library prints to nowhere, or with verbose to standard error, from now on. Once,
// before the first call of it. Throws Failure when there are no descriptors left.
void divertLibraryLines(bool verbose);

// Where the host itself prints; before the diversion, standard output.
std::FILE* out();

// Prints one line, or value as indented JSON. Bytes that are no UTF-8 are replaced in JSON.
void printLine(const std::string& line);
void printJson(const Json& value);

// Writes out what is buffered. Throws Failure when the reader has gone or the disk is full.
void finishOutput();

} // namespace doccam::host
