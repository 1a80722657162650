// The calls of a program on virtual nodes, in the manner of the system calls: a result, or -1 with
// errno set. The descriptors and addresses handed in must be virtual.
#pragma once

#include <poll.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>

namespace doccam::virtualcam {

// The number N of a path "/dev/videoN" that belongs to a virtual camera; -1 for every other path.
int virtualNode(const char* path);

int openNode(int node, int flags);

// Undoes openNode up to closing the descriptor itself, and returns what close() shall return.
int closeNode(int descriptor);

int requestNode(int descriptor, std::uint32_t request, void* argument);

// Finds the memory file in place of the node, for the caller to map at the same offset; -1 where
// the mapping must fail. Keeps the file open until finishMapping().
class NodeMapping {
  public:
    NodeMapping(int descriptor, std::size_t length, int protection, int flags, off_t offset);
    ~NodeMapping();
    NodeMapping(const NodeMapping&) = delete;
    NodeMapping& operator=(const NodeMapping&) = delete;

    int memoryFile() const;

    // Notes what became of the mapping.
    void finish(void* address);

  private:
    struct State;
    State* state_;
};

// False where the unmapping must fail (errno is set) and nothing be unmapped.
bool mayUnmap(void* address);
void unmapped(void* address);

short pollErrors(int descriptor);

// copy is a fresh duplicate of descriptor.
void shareNode(int descriptor, int copy);
// The descriptor is about to be replaced by dup2().
void dropNode(int descriptor);

} // namespace doccam::virtualcam
