#include "environment.h"

#include <pwd.h>
#include <sys/select.h>

#include <cstdlib>
#include <ctime>
#include <utility>

namespace doccam::test {
namespace {

std::optional<std::string> home;
Pauses* pauses = nullptr;

} // namespace

Home::Home(const char* folder)
  : before_(home) {
    home = folder != nullptr ? std::optional<std::string>(folder) : std::nullopt;
}

Home::~Home() {
    home = before_;
}

Pauses::Pauses(std::function<void(int)> onPause)
  : action(std::move(onPause)) {
    pauses = this;
}

Pauses::~Pauses() {
    pauses = nullptr;
}

Variable::Variable(const char* name, const char* value)
  : name_(name)
  , wasSet_(std::getenv(name) != nullptr) {
    before_ = wasSet_ ? std::getenv(name) : "";
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
}

Variable::~Variable() {
    wasSet_ ? setenv(name_.c_str(), before_.c_str(), 1) : unsetenv(name_.c_str());
}

} // namespace doccam::test

// These replace the C library's functions in this test program.

extern "C" passwd* getpwuid(uid_t) {
    static passwd entry{};
    if (!doccam::test::home) {
        return nullptr;
    }
    entry.pw_dir = doccam::test::home->data();
    return &entry;
}

extern "C" int select(int, fd_set*, fd_set*, fd_set*, timeval* wait) {
    if (doccam::test::pauses == nullptr) {
        const timespec time{wait->tv_sec, wait->tv_usec * 1000};
        return nanosleep(&time, nullptr);
    }
    auto& pauses = *doccam::test::pauses;
    pauses.lengths.push_back(wait->tv_sec * 1'000'000 + wait->tv_usec);
    pauses.action(static_cast<int>(pauses.lengths.size()) - 1);
    return 0;
}
