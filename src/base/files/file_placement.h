// Moving a finished file to its target. Used by the library and the hosts.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

namespace doccam {

// None with errno set if path leads to no file or may not be inspected.
std::optional<struct stat> statusOf(const std::string& path);

// The same of an open file.
std::optional<struct stat> statusOf(int file);

// The end of the chain of symbolic links that starts at path, whether or not a file is there.
std::string endOfLinks(const std::string& path);

// Gives the open file the owner and permissions of existing, as far as permitted.
void takeOver(int file, const struct stat& existing);

// Moves the file at from to to, replacing any file there, or only its content, keeping from, if the
// folder permits no more, as for another user's file. False with errno set on failure.
bool replaceFile(const std::string& from, const std::string& to);

// Moves the file at from to an unused name. False with errno set; EEXIST if the name is in use.
bool placeNewFile(const std::string& from, const std::string& to);

} // namespace doccam
