// Looking at live frames, beside the streaming thread.
#pragma once

#include <opencv2/core/mat.hpp>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace doccam::serve {

// Frames that come while one is looked at are left out.
class FrameLooks {
  public:
    // Makes what is looked at of a red-first frame; the stream waits meanwhile.
    using Reduce = std::function<void(const cv::Mat& frame, cv::Mat& reduced)>;

    // Called on a thread of its own with a reduced frame, which it may change; with an empty one
    // when there is no picture any more. Must not throw.
    using Look = std::function<void(cv::Mat& reduced)>;

    // Begins at most one look in that time. At low priority the thread takes only the processor
    // time that others leave.
    FrameLooks(std::chrono::milliseconds every, bool lowPriority, Reduce reduce, Look look);
    ~FrameLooks();
    FrameLooks(const FrameLooks&) = delete;
    FrameLooks& operator=(const FrameLooks&) = delete;

    // Whether frames are looked at; initially not. Any thread.
    void setWanted(bool wanted);

    // Gives width x height pixels, red first, which are reduced or ignored. Streaming thread.
    void give(unsigned char* pixels, int width, int height);

    // There is no picture any more. Any thread.
    void forget();

  private:
    void run(bool lowPriority);
    bool awaitFrame();

    const std::chrono::milliseconds every_;
    const Reduce reduce_;
    const Look look_;
    std::mutex mutex_;
    std::condition_variable changed_;
    cv::Mat given_; // reduced
    bool wanted_ = false;
    bool free_ = true; // to take the next frame
    bool fresh_ = false;
    bool forgotten_ = false;
    bool closed_ = false;
    cv::Mat frame_;
    std::jthread thread_;
};

} // namespace doccam::serve
