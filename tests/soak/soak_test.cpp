// Sessions and frames by the thousand leave the process as it was. DOCCAM_SOAK_SESSIONS and
// DOCCAM_SOAK_FRAMES make the runs long.
#include "integration/session_fixture.h"
#include "soak/process_size.h"
#include "soak/restless_host.h"
#include "support/sanitized.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

namespace doccam::test {
namespace {

int fromEnvironment(const char* name, int usual) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::atoi(value) : usual;
}

void ignoreFault(int /*fault*/, const char* /*message*/) {}

void ignorePreview(unsigned char* pixels, int width, int height, int /*x*/, int /*y*/) {
    // The last pixel too is the host's to read.
    volatile unsigned char last = pixels[width * height * 3 - 1];
    static_cast<void>(last);
}

class Soak : public SessionTest {
  protected:
    Soak() {
        // The library's lines by the hundred thousand are of no use.
        output_ = dup(STDOUT_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
        SetFaultCallback(ignoreFault);
        watchFrames();
        SetWebDataCallback(ignorePreview);
    }

    ~Soak() override {
        std::fflush(stdout);
        dup2(output_, STDOUT_FILENO);
        close(output_);
        SetFaultCallback(nullptr);
    }

    void oneSession(int number) {
        openSmall(number % 2);
        SetWebFormSize(320, 240);
        waitForFrames(framesSeen() + 1);
        closeCamera();
    }

    // Runs a busy session until count more frames have been seen, and closes it.
    void framesWithARestlessHost(int count) {
        openSmall(kMjpegFormat);
        SetWebFormSize(320, 240);
        const RestlessHost host(folder_.path());
        waitForFrames(framesSeen() + count);
        std::fprintf(stderr, "%d frames, %ld actions of the host\n", count, host.actions());
    }

    // Memory may settle; everything else is counted.
    static void expectFlat(const ProcessSize& before, const ProcessSize& after) {
        constexpr long kSettling = 24 * 1024;
        if (!kSanitized) { // a sanitizer keeps what was freed
            EXPECT_LE(after.residentKilobytes, before.residentKilobytes + kSettling);
        }
        EXPECT_EQ(after.descriptors, before.descriptors);
        EXPECT_EQ(after.threads, before.threads);
    }

    ScratchFolder folder_;
    int output_ = -1;
};

TEST_F(Soak, OfSessionsLeavesTheProcessAsItWas) {
    const int sessions = fromEnvironment("DOCCAM_SOAK_SESSIONS", 20);
    for (int warmUp = 0; warmUp < 4; ++warmUp) {
        oneSession(warmUp);
    }
    const ProcessSize before = processSize();
    for (int session = 0; session < sessions; ++session) {
        oneSession(session);
    }
    const ProcessSize after = processSize();
    print("before", before);
    print("after " + std::to_string(sessions) + " sessions", after);
    expectFlat(before, after);
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);
}

TEST_F(Soak, OfFramesWithARestlessHostLeavesTheProcessAsItWas) {
    const int frames = fromEnvironment("DOCCAM_SOAK_FRAMES", kSanitized ? 100 : 300);
    framesWithARestlessHost(kSanitized ? 30 : 100);
    closeCamera();
    const ProcessSize before = processSize();
    framesWithARestlessHost(frames);
    closeCamera();
    const ProcessSize after = processSize();
    print("before", before);
    print("after " + std::to_string(frames) + " frames", after);
    expectFlat(before, after);
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);
}

} // namespace
} // namespace doccam::test
