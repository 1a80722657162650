// Control over the library's environment: home directory, pauses, variables.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace doccam::test {

// While alive, the user has this home directory, or no password entry at all. getpwuid is replaced,
// so that nothing is written into a real home.
class Home {
  public:
    explicit Home(const char* folder);
    ~Home();
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

  private:
    std::optional<std::string> before_;
};

// While alive, the library's pauses are recorded in microseconds and take no time: select is
// replaced. onPause runs in each pause, with the number of pauses before it.
class Pauses {
  public:
    explicit Pauses(std::function<void(int)> onPause = [](int) {});
    ~Pauses();
    Pauses(const Pauses&) = delete;
    Pauses& operator=(const Pauses&) = delete;

    std::vector<long> lengths;
    std::function<void(int)> action;
};

// While alive, the environment variable has this value, or is not set.
class Variable {
  public:
    Variable(const char* name, const char* value);
    ~Variable();
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    std::string name_;
    std::string before_;
    bool wasSet_;
};

} // namespace doccam::test
