// The host's own output, apart from what the library and those below it print.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>

namespace doccam::host {

using Json = nlohmann::ordered_json;

// Opens /dev/null in place of a standard stream that is closed, which the next file opened would
// stand in for otherwise. Before any file is opened.
void holdStandardStreams();

// Sends what is printed on standard output and standard error to nowhere, or with verbose all of it
// to standard error, from now on. Once, before the first call of the library. Throws Failure when
// there are no descriptors left.
void divertLibraryLines(bool verbose);

// Where the host itself prints its results, and where it complains and tells its progress; before
// the diversion, standard output and standard error.
std::FILE* out();
std::FILE* err();

// Prints the message on err() under the program's name, on one line and harmless to a terminal.
void complain(const std::string& message);

// Control characters but for newline and tab, and bytes that are no UTF-8, as \xNN: what a code or
// a device says of itself must not steer the terminal that shows it.
std::string harmless(const std::string& text);

// Prints one line, on a terminal made harmless, or value as indented JSON. Bytes that are no UTF-8
// are replaced in JSON.
void printLine(const std::string& line);
void printJson(const Json& value);

// Writes out what is buffered. Throws Failure when the reader has gone or the disk is full.
void finishOutput();

} // namespace doccam::host
