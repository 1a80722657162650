// Querying and deleting files.
#pragma once

#include <string>
#include <vector>

namespace doccam {

// Whether something exists at path, readable or not.
bool fileExists(const char* path);

// The last count bytes of the file at path; fewer if it is shorter, none if it cannot be read.
std::string lastBytes(const std::string& path, std::size_t count);

// The home directory of the process's real user, else $HOME, else /tmp.
std::string homeFolder();

// Deletes those of the files that exist, in order.
void removeFiles(const std::vector<std::string>& files);

} // namespace doccam
