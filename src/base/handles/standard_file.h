// Owning handle for a C stream, for files whose every write must be checked.
#pragma once

#include <cstdio>
#include <memory>

namespace doccam {

struct StandardFileClose {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using StandardFile = std::unique_ptr<std::FILE, StandardFileClose>;

// Closes file and returns whether all writes succeeded.
inline bool closeChecked(StandardFile file) {
    return std::fclose(file.release()) == 0;
}

} // namespace doccam
