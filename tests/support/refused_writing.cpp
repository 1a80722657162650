#include "support/refused_writing.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

namespace doccam::test {

FullDisk::FullDisk(unsigned long bytes) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    before_ = limit.rlim_cur;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
    handlerBefore_ = std::signal(SIGXFSZ, SIG_IGN);
}

FullDisk::~FullDisk() {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = before_;
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handlerBefore_);
}

OrdinaryUser::OrdinaryUser()
  : before_(geteuid()) {
    if (before_ == 0 && seteuid(kUser) != 0) {
        ADD_FAILURE() << "cannot give up root's rights";
    }
}

OrdinaryUser::~OrdinaryUser() {
    if (seteuid(before_) != 0) {
        ADD_FAILURE() << "cannot take root's rights back";
    }
}

} // namespace doccam::test
