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

// One open handle of the node; 0 is nobody.
using ClientId = int;

// All functions may be called by any thread; those that return int return 0 or an errno value.
class CaptureDevice {
  public:
    using Time = FrameClock::Time;
    // Told from when on a frame (or an error) can be fetched without waiting; none: not in sight.
    using ReadyObserver = std::function<void(std::optional<Time>)>;

    CaptureDevice(const CameraDescription& description, Identity identity,
                  std::shared_ptr<FrameSource> source);

    void attach(ClientId client, ReadyObserver observer);
    // Ends the client's stream and frees its buffers. Its observer is not called any more.
    void detach(ClientId client);

    // Carries out one request; argument must point to the request's record.
    int request(ClientId client, std::uint32_t request, void* argument, bool nonBlocking);

    // Finds the memory of the buffer that begins at the offset and is at least length bytes long.
    int map(std::size_t offset, std::size_t length, std::shared_ptr<BufferMemory>& memory);

    // What poll() reports in place of readiness: POLLERR, POLLHUP, or 0 while streaming.
    short pollErrors() const;

    void unplug();
    bool unplugged() const;
    void stall();
    void resume();
    void setInterval(int milliseconds);
    void addFault(const Fault& fault);
    void clearFaults();
    // Counts a call that is no device request ("open", "mmap") against the faults.
    int noteCall(const std::string& name);

    bool streaming() const;
    // A thread waits for a frame at this moment.
    bool waitedFor() const;
    std::optional<DeliveredFrame> lastFrame() const;
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
    std::uint32_t stream_ = 0; // counts streams, so that a waiter notices that its own has ended
    bool streaming_ = false;
    bool stalled_ = false;
    bool unplugged_ = false;
    int waiting_ = 0;
    std::optional<std::vector<Fault>> dueFaults_; // of the frame that is due, once it is
    std::optional<DeliveredFrame> last_;
};

} // namespace doccam::virtualcam
