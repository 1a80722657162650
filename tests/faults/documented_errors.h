// The errors that the kernel documents for the requests of a session.
#pragma once

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <vector>

namespace doccam::test {

// Those that any request may return.
inline const std::vector<int> kGeneric{EAGAIN, EBADF,  EBUSY,  EFAULT, EINVAL, ENODEV,
                                       ENOMEM, ENOTTY, ENOSPC, EPERM,  EIO,    ENXIO};

// The generic errors and a request's own.
inline std::vector<int> genericAnd(const std::vector<int>& own) {
    std::vector<int> all = kGeneric;
    std::copy_if(own.begin(), own.end(), std::back_inserter(all), [](int error) {
        return std::find(kGeneric.begin(), kGeneric.end(), error) == kGeneric.end();
    });
    return all;
}

inline const std::vector<int> kOpenErrors{EACCES, EBUSY,  EINTR,  EIO,   EMFILE, ENFILE,
                                          ENODEV, ENOENT, ENOMEM, ENXIO, EPERM};
inline const std::vector<int> kMapErrors{EACCES, EAGAIN, EBADF, EEXIST,    EINVAL, ENFILE,
                                         ENODEV, ENOMEM, EPERM, EOVERFLOW, ETXTBSY};
inline const std::vector<int> kUnmapErrors{EINVAL, ENOMEM};
inline const std::vector<int> kCloseErrors{EBADF, EINTR, EIO, ENOSPC, EDQUOT};
inline const std::vector<int> kQueueErrors = genericAnd({EBADR, EBUSY, EPIPE, EINTR});
inline const std::vector<int> kDequeueErrors = genericAnd({EPIPE, EINTR});
inline const std::vector<int> kStreamErrors = genericAnd({EPIPE, ENOLINK});
inline const std::vector<int> kControlErrors = genericAnd({ERANGE, EACCES, EILSEQ});

} // namespace doccam::test
