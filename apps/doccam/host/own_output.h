// The host's own output, separate from that of the library and its dependencies.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>

namespace doccam::host {

using Json = nlohmann::ordered_json;

// Opens /dev/null for closed standard streams, whose descriptors the next opened file would
// otherwise get. Call before any file is opened.
void holdStandardStreams();

// Discards what others print on the standard streams from now on, or with verbose sends it to
// standard error. Call once, before the library. Throws Failure if no descriptors are left.
void divertLibraryLines(bool verbose);

// The stream for results; until the diversion, standard output.
std::FILE* out();

// From now on no results are printed, as out() takes a file's bytes.
void dropResults();

// Whether standard error is a terminal.
bool errorsAreOnTerminal();

// Shows a line there in the place of the one before, until another is printed; empty for none.
void showPassingLine(const std::string& line);

// Prints the message as an error after the program's name, on one line and escaped for a terminal.
void complain(const std::string& message);

// The same, unless nobody can take it at once.
void complainWithoutWaiting(const std::string& message);

// Print one line, on a terminal escaped but for newlines and tabs, or value as indented JSON, in
// which invalid UTF-8 is replaced.
void printLine(const std::string& line);
void printJson(const Json& value);

// The value as JSON without line breaks, likewise.
std::string oneLineOf(const Json& value);

// Flushes the output. Throws Failure if the reader has gone or the disk is full.
void finishOutput();

// A command's results. With json, prints value on destruction, so that a command that fails
// half-way still reports what it did.
class Result {
  public:
    Result(bool json, Json initial);
    ~Result();
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;

    // Adds row to the array value, or prints the line at once without json.
    void add(const Json& row, const std::string& line);

    // Prints the line, except with json.
    void tell(const std::string& line) const;

    Json value;

  private:
    bool json_;
};

// Progress on standard error: on a terminal a single line, overwritten; elsewhere one line each.
class ProgressLine {
  public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(const std::string& text);

  private:
    bool terminal_;
    bool open_ = false;
};

} // namespace doccam::host
