#include "busy_host.h"

#include <doccam/doccam.hpp>

#include <limits>
#include <random>

namespace doccam::test {
namespace {

constexpr int kActions = 10'000;

// Two may be dropped after a turn; the third is shown as the next burst begins.
constexpr int kFramesBetween = 3;

void changeAnything(std::mt19937& random) {
    const auto between = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    switch (between(0, 9)) {
    case 0:
        SetWebFormSize(between(-2, 260), between(-2, 200));
        break;
    case 1:
        SetWebFormSize(between(1, 4000), between(1, 4000));
        break;
    case 2:
        Web_RotateL();
        break;
    case 3:
        Web_RotateR();
        break;
    case 4:
        SetRotate(between(-1, 4));
        break;
    case 5:
        Web_TrueSize();
        break;
    case 6:
        Web_ZoomOut();
        break;
    case 7:
        Web_SetMoveOffet(between(-500, 500), between(-500, 500));
        break;
    case 8:
        Web_SetMoveOffet(between(std::numeric_limits<int>::min(), 0),
                         between(0, std::numeric_limits<int>::max()));
        break;
    default:
        Web_ZoomIn();
        break;
    }
}

} // namespace

BusyHost::BusyHost(const std::atomic<int>& frames)
  : thread_([this, &frames] { run(frames); }) {}

BusyHost::~BusyHost() {
    stop_ = true;
    thread_.join();
}

void BusyHost::run(const std::atomic<int>& frames) {
    std::mt19937 random(11);
    std::uniform_int_distribution<int> burst(1, 80);
    for (int left = kActions; left > 0 && !stop_;) {
        for (int action = burst(random); action > 0 && left > 0; --action, --left) {
            changeAnything(random);
        }
        const int seen = frames;
        while (frames < seen + kFramesBetween && !stop_) {
            std::this_thread::yield();
        }
    }
    SetRotate(0);
    SetWebFormSize(kFormWidth, kFormHeight);
    done_ = true;
}

} // namespace doccam::test
