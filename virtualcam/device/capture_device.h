// One camera's capture node: a state machine that answers requests as the UVC driver does.
#pragma once

#include "device/buffer_queue.h"
#include "device/controls.h"
#include "device/faults.h"
#include "device/formats.h"
#include "device/frame_clock.h"
#include "device/frame_source.h"
#include "device/identity.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

namespace doccam::virtualcam {

// One open handle of the node; 0 for none.
using ClientId = int;

// Thread-safe. Functions that return int return 0 or an errno value.
class CaptureDevice {
  public:
    using Time = FrameClock::Time;
    // Receives the time from which a frame (or an error) can be fetched without waiting, if known.
    using ReadyObserver = std::function<void(std::optional<Time>)>;

    CaptureDevice(const CameraDescription& description, Identity identity,
                  std::shared_ptr<FrameSource> source);

    void attach(ClientId client, ReadyObserver observer);
    // Ends the client's stream and frees its buffers. Its observer is no longer called.
    void detach(ClientId client);

    // Performs one request; argument must point to the request's record.
    int request(ClientId client, std::uint32_t request, void* argument, bool nonBlocking);

    // Returns the memory of the buffer at offset, which must be at least length bytes long.
    int map(std::size_t offset, std::size_t length, std::shared_ptr<BufferMemory>& memory);

    // What poll() reports instead of readiness: POLLERR, POLLHUP, or 0 while streaming.
    short pollErrors() const;

    void unplug();
    bool unplugged() const;
    void stall();
    void resume();
    void setInterval(int milliseconds);
    void addFault(const Fault& fault);
    void clearFaults();
    // Counts a call other than an ioctl ("open", "mmap") against the faults.
    int noteCall(const std::string& name);

    bool streaming() const;
    // Whether a thread is waiting for a frame.
    bool waitedFor() const;
    std::optional<DeliveredFrame> lastFrame() const;
    FrameCount frameCount();
    std::optional<int> control(std::uint32_t id) const;
    int setControl(std::uint32_t id, int value);

  private:
    using Lock = std::unique_lock<std::mutex>;

    int dispatch(Lock& lock, ClientId client, std::uint32_t request, void* argument,
                 bool nonBlocking);
    std::optional<int> answerFormat(ClientId client, std::uint32_t request, void* argument);
    std::optional<int> answerControl(std::uint32_t request, void* argument);
    std::optional<int> answerStreaming(ClientId client, std::uint32_t request, void* argument);

    int acquire(ClientId client);
    int setFormat(ClientId client, v4l2_format& format);
    int tryFormat(v4l2_format& format) const;
    int getFormat(v4l2_format& format) const;
    int getParameters(v4l2_streamparm& parameters) const;
    int setParameters(ClientId client, v4l2_streamparm& parameters);
    PictureFormat nearest(std::uint32_t pixelFormat, Size size) const;

    int requestBuffers(ClientId client, v4l2_requestbuffers& request);
    int streamOn(int type);
    int streamOff(int type);
    int dequeue(Lock& lock, v4l2_buffer& record, bool nonBlocking);
    int awaitFrame(Lock& lock, bool nonBlocking);
    int deliver(Lock& lock, v4l2_buffer& record);
    bool frameIsDue() const;
    bool noteDueFrame();
    void stopStream();
    void unplugLocked();
    FrameClock::Interval interval() const;
    std::optional<Time> readyTime() const;
    void publishReadiness();

    const Identity identity_;
    const std::shared_ptr<FrameSource> source_;
    const FormatOffer offer_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::map<ClientId, ReadyObserver> observers_;
    ControlBank controls_;
    FaultPlan faults_;
    std::optional<int> intervalMs_;
    PictureFormat format_;
    int frameRate_ = 0;
    ClientId owner_ = 0; // who may stream
    BufferQueue buffers_;
    FrameClock clock_;
    std::chrono::steady_clock::duration longestWait_{};
    std::uint32_t stream_ = 0; // counts streams, so that a waiter notices the end of its own
    bool streaming_ = false;
    bool stalled_ = false;
    bool unplugged_ = false;
    int waiting_ = 0;
    std::optional<std::vector<Fault>> dueFaults_; // the faults of the due frame, once it is due
    std::optional<DeliveredFrame> last_;
};

} // namespace doccam::virtualcam
