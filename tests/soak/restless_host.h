// A host that does everything a host may do, at random and without rest.
#pragma once

#include <atomic>
#include <random>
#include <string>
#include <thread>

namespace doccam::test {

// Changes every setting, rotates, zooms, pans, reads and moves controls, focuses, takes stills into
// folder and reads codes until it is destroyed.
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
    int between(int least, int most);

    std::string folder_;
    std::mt19937 random_{20};
    std::atomic<long> actions_{0};
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

} // namespace doccam::test
