#include "capture/decode_thread.h"

#include <exception>
#include <utility>

namespace doccam {

void DecodeThread::begin(std::function<void()> work) {
    work_ = std::move(work);
    failure_ = nullptr;
    if (!thread_.joinable()) {
        try {
            thread_ = std::thread([this] { run(); });
        } catch (const std::exception&) {
            this->work();
            return;
        }
    }
    phase_.store(Phase::kWorking, std::memory_order_release);
    phase_.notify_all();
}

void DecodeThread::finish() {
    waitUntilIdle();
    if (std::exception_ptr failure = std::exchange(failure_, nullptr)) {
        std::rethrow_exception(std::move(failure));
    }
}

void DecodeThread::waitUntilIdle() const {
    phase_.wait(Phase::kWorking, std::memory_order_acquire);
}

void DecodeThread::end() {
    if (!thread_.joinable()) {
        return;
    }
    waitUntilIdle();
    phase_.store(Phase::kEnding, std::memory_order_release);
    phase_.notify_all();
    thread_.join();
    phase_.store(Phase::kIdle, std::memory_order_relaxed);
}

void DecodeThread::run() {
    for (;;) {
        phase_.wait(Phase::kIdle, std::memory_order_acquire);
        if (phase_.load(std::memory_order_acquire) == Phase::kEnding) {
            return;
        }
        work();
        phase_.store(Phase::kIdle, std::memory_order_release);
        phase_.notify_all();
    }
}

void DecodeThread::work() {
    try {
        work_();
    } catch (...) {
        failure_ = std::current_exception();
    }
}

} // namespace doccam
