#include "preload/node_calls.h"

#include "device/request_names.h"
#include "preload/lookup.h"
#include "preload/registry.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string_view>

namespace doccam::virtualcam {

namespace {

// error is 0 for success.
int report(const char* request, const Handle& handle, int descriptor, int error) {
    const int result = error == 0 ? 0 : -1;
    Registry::instance().log().note(request, handle.node(), descriptor, result, error);
    if (error != 0) {
        errno = error;
    }
    return result;
}

// Keeps exceptions out of the program; an unreadable picture becomes EIO.
int guardedRequest(Handle& handle, std::uint32_t request, void* argument, bool nonBlocking) {
    try {
        return handle.request(request, argument, nonBlocking);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "doccam-virtualcam: %s\n", error.what());
        return EIO;
    }
}

} // namespace

int virtualNode(const char* path) {
    constexpr std::string_view kPrefix = "/dev/video";
    if (path == nullptr || std::strncmp(path, kPrefix.data(), kPrefix.size()) != 0) {
        return -1;
    }
    const char* digits = path + kPrefix.size();
    const char* end = digits + std::strlen(digits);
    int node = -1;
    const auto [stop, error] = std::from_chars(digits, end, node);
    const bool number = error == std::errc() && stop == end && node >= 0;
    return number && Registry::instance().owns(node) ? node : -1;
}

int openNode(int node, int flags) {
    const int saved = errno;
    const int descriptor = Registry::instance().open(node, flags);
    if (descriptor >= 0) {
        errno = saved;
    }
    return descriptor;
}

int closeNode(int descriptor) {
    Registry& registry = Registry::instance();
    const std::shared_ptr<Handle> handle = registry.find(descriptor);
    if (!handle) {
        return 0;
    }
    const int error = handle->device().noteCall("close");
    registry.forget(descriptor);
    return report("close", *handle, descriptor, error);
}

int requestNode(int descriptor, std::uint32_t request, void* argument) {
    const int saved = errno;
    const std::shared_ptr<Handle> handle = Registry::instance().find(descriptor);
    if (!handle) {
        errno = EBADF;
        return -1;
    }
    const bool nonBlocking = (fcntl(descriptor, F_GETFL) & O_NONBLOCK) != 0;
    const int error = guardedRequest(*handle, request, argument, nonBlocking);
    errno = saved;
    return report(requestName(request), *handle, descriptor, error);
}

struct NodeMapping::State {
    std::shared_ptr<Handle> handle;
    std::shared_ptr<BufferMemory> memory;
    int descriptor;
    int error;
};

NodeMapping::NodeMapping(int descriptor, std::size_t length, int protection, int flags,
                         off_t offset)
  : state_(new State{Registry::instance().find(descriptor), nullptr, descriptor, 0}) {
    Handle* handle = state_->handle.get();
    if (handle == nullptr) {
        state_->error = EBADF;
    } else if (const int fault = handle->device().noteCall("mmap"); fault != 0) {
        state_->error = fault;
    } else if ((flags & MAP_SHARED) == 0 || (protection & PROT_READ) == 0 || offset < 0 ||
               handle->metadata()) {
        state_->error = EINVAL;
    } else {
        state_->error =
            handle->device().map(static_cast<std::size_t>(offset), length, state_->memory);
    }
    if (state_->error != 0) {
        errno = state_->error;
    }
}

NodeMapping::~NodeMapping() {
    delete state_;
}

int NodeMapping::memoryFile() const {
    return state_->memory ? state_->memory->descriptor() : -1;
}

void NodeMapping::finish(void* address) {
    if (address != MAP_FAILED) {
        Registry::instance().noteMapping(address, state_->handle);
    } else if (state_->error == 0) {
        state_->error = errno;
    }
    if (state_->handle) {
        report("mmap", *state_->handle, state_->descriptor, state_->error);
    }
}

bool mayUnmap(void* address) {
    const std::shared_ptr<Handle> handle = Registry::instance().mappedBy(address);
    const int error = handle ? handle->device().noteCall("munmap") : 0;
    return !handle || report("munmap", *handle, -1, error) == 0;
}

void unmapped(void* address) {
    Registry::instance().forgetMapping(address);
}

short pollErrors(int descriptor) {
    const std::shared_ptr<Handle> handle = Registry::instance().find(descriptor);
    return handle ? handle->pollErrors() : static_cast<short>(0);
}

void shareNode(int descriptor, int copy) {
    Registry::instance().share(descriptor, copy);
}

void dropNode(int descriptor) {
    Registry::instance().forget(descriptor);
}

} // namespace doccam::virtualcam
