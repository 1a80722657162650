// Putting a finished file in the place of another one. The library and the hosts use it.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

namespace doccam {

// Nothing when path leads to no file, or to one that may not be looked at; errno says which.
std::optional<struct stat> statusOf(const std::string& path);

// Where the chain of symbolic links that starts at path ends, whether or not a file is there.
std::string endOfLinks(const std::string& path);

// Gives the open file the owner and permissions of existing, as far as this process may.
void takeOver(int file, const struct stat& existing);

// Puts the file at from in the place of the one at to, or of none. Where the folder refuses that,
// as for another user's file in a shared folder, the content of an existing file is replaced and
// from stays. False with errno when nothing could be done.
bool replaceFile(const std::string& from, const std::string& to);

// Moves the file at from to a name that no file has. False with errno; EEXIST when one has it.
bool placeNewFile(const std::string& from, const std::string& to);

} // namespace doccam
