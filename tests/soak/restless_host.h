// A host that makes every possible call, at random and without pause.
#pragma once

#include <atomic>
#include <random>
#include <string>
#include <thread>

namespace doccam::test {

// Until its destruction: changes every setting, rotates, zooms, pans, reads and sets controls,
// focuses, takes stills into folder and reads codes.
class RestlessHost {
  public:
    explicit RestlessHost(std::string folder);
    ~RestlessHost();
    RestlessHost(const RestlessHost&) = delete;
    RestlessHost& operator=(const RestlessHost&) = delete;

    long actions() const { return actions_; }

    void waitForActions(long count) const;

  private:
    void run();
    void act();
    void changeSetting();
    void changeView();
    int between(int low, int high);

    std::string folder_;
    std::mt19937 random_{20};
    std::atomic<long> actions_{0};
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

} // namespace doccam::test
