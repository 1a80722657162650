// The device calls of a program, as the preload library answers them.
#include "support/camera_fixture.h"
#include "virtual_camera_client.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/select.h>

#include <algorithm>
#include <thread>

namespace {

using doccam::test::VideoClient;
using doccam::virtualcam::Fault;
using doccam::virtualcam::FaultKind;
using doccam::virtualcam::kMjpeg;
using doccam::virtualcam::kYuyv;
namespace virtualcam = doccam::virtualcam;

class VirtualCameraCalls : public doccam::test::BareCameraTest {
  protected:
    virtualcam::CameraId camera_ = bed_.add(fastCamera());

    void setFault(FaultKind kind, int at = 1, int value = 0) {
        Fault fault;
        fault.kind = kind;
        fault.at = at;
        fault.value = value;
        virtualcam::addFault(camera_, fault);
    }

    void setCallFault(const std::string& request, int at, int error, bool onwards = false) {
        virtualcam::addFault(camera_, {FaultKind::kCall, request, at, error, 0, onwards});
    }
};

TEST_F(VirtualCameraCalls, PutsTheDeliveredBytesIntoTheMapping) {
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record = VideoClient::buffer();
    ASSERT_EQ(client.request(VIDIOC_DQBUF, record), 0);
    const auto frame = virtualcam::lastFrame(camera_);
    ASSERT_TRUE(frame);
    ASSERT_EQ(frame->bytes->size(), record.bytesused);
    EXPECT_TRUE(std::equal(frame->bytes->begin(), frame->bytes->end(), client.bytes(record.index)));
}

} // namespace
