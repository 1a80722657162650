// A program's calls on virtual nodes. Like system calls they return a result, or -1 with errno set.
// Descriptors and addresses passed in must be virtual.
#pragma once

#include <poll.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>

namespace doccam::virtualcam {

// N if path is "/dev/videoN" and belongs to a virtual camera, otherwise -1.
int virtualNode(const char* path);

int openNode(int node, int flags);

// Undoes openNode, except closing the descriptor, and returns close()'s result.
int closeNode(int descriptor);

int requestNode(int descriptor, std::uint32_t request, void* argument);

// The memory file to map instead of the node, at the same offset; -1 if the mapping must fail.
// Keeps the file open until finish().
class NodeMapping {
  public:
    NodeMapping(int descriptor, std::size_t length, int protection, int flags, off_t offset);
    ~NodeMapping();
    NodeMapping(const NodeMapping&) = delete;
    NodeMapping& operator=(const NodeMapping&) = delete;

    int memoryFile() const;

    // Records the mapping's result.
    void finish(void* address);

  private:
    struct State;
    State* state_;
};

// False, with errno set, if the unmapping must fail and nothing be unmapped.
bool mayUnmap(void* address);
void unmapped(void* address);

short pollErrors(int descriptor);

// copy is a fresh duplicate of descriptor.
void shareNode(int descriptor, int copy);
// Call before dup2() replaces the descriptor.
void dropNode(int descriptor);

} // namespace doccam::virtualcam
