// Thousands of sessions and frames must not make the process grow. DOCCAM_SOAK_SESSIONS and
// DOCCAM_SOAK_FRAMES lengthen the runs.
#include "integration/session_fixture.h"
#include "soak/process_size.h"
#include "soak/restless_host.h"
#include "support/sanitized.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace doccam::test {
namespace {

int fromEnvironment(const char* name, int usual) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::atoi(value) : usual;
}

// Random settings cause many faults; none may end the stream.
void onFault(int fault, const char* message) {
    if (fault == DOCCAM_FAULT_STREAM_ENDED) {
        std::fprintf(stderr, "the stream has ended: %s\n", message);
        notifyStreamEnded();
    }
}

void ignorePreview(unsigned char* pixels, int width, int height, int /*x*/, int /*y*/) {
    // The host may read up to the last pixel.
    volatile unsigned char last = pixels[width * height * 3 - 1];
    static_cast<void>(last);
}

// Prints failures while standard output is silenced.
class FailuresOnStandardError : public testing::EmptyTestEventListener {
  public:
    void OnTestPartResult(const testing::TestPartResult& result) override {
        if (result.failed()) {
            std::fprintf(stderr, "%s:%d: Failure\n%s\n",
                         result.file_name() != nullptr ? result.file_name() : "",
                         result.line_number(), result.message());
        }
    }
};

class Soak : public SessionTest {
  protected:
    static void SetUpTestSuite() {
        testing::UnitTest::GetInstance()->listeners().Append(new FailuresOnStandardError);
    }

    Soak() {
        // The library prints lines by the hundred thousand.
        output_ = dup(STDOUT_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
        SetFaultCallback(onFault);
        watchFrames();
        SetWebDataCallback(ignorePreview);
    }

    ~Soak() override {
        std::fflush(stdout);
        dup2(output_, STDOUT_FILENO);
        close(output_);
        SetFaultCallback(nullptr);
    }

    static void sessions(int count) {
        for (int session = 0; session < count; ++session) {
            ASSERT_NO_FATAL_FAILURE(openSmall(session % 2));
            SetWebFormSize(320, 240);
            ASSERT_TRUE(waitForFrames(framesSeen() + 1));
            closeCamera();
        }
    }

    // Half of the frames in each format, each half in a busy session.
    void framesWithARestlessHost(int count) {
        for (const int format : {kMjpegFormat, kYuyvFormat}) {
            ASSERT_NO_FATAL_FAILURE(openSmall(format));
            SetWebFormSize(320, 240);
            {
                const RestlessHost host(folder_.path());
                ASSERT_TRUE(waitForFrames(framesSeen() + count / 2));
                host.waitForActions(kMinimumActions);
                std::fprintf(stderr, "%d frames, %ld actions of the host\n", count / 2,
                             host.actions());
            }
            closeCamera();
        }
    }

    // Warms up, so that everything created once exists, then does the work in two halves. The
    // process must not grow from the first half to the second.
    template <typename Run>
    static void expectFlat(int warmUp, int work, const std::string& name, Run run) {
        ASSERT_NO_FATAL_FAILURE(run(warmUp));
        const ProcessSize before = processSize();
        ASSERT_NO_FATAL_FAILURE(run(work / 2));
        const ProcessSize middle = processSize();
        ASSERT_NO_FATAL_FAILURE(run(work - work / 2));
        const ProcessSize after = processSize();
        print("before", before);
        print("after " + std::to_string(work / 2) + " " + name, middle);
        print("after " + std::to_string(work) + " " + name, after);
        EXPECT_EQ(after.descriptors, before.descriptors);
        EXPECT_EQ(after.threads, before.threads);
        if (!kSanitized) { // a sanitizer keeps what was freed
            EXPECT_LE(after.mappings, middle.mappings + kMaximumNewMappings);
            EXPECT_LE(after.residentKilobytes, middle.residentKilobytes + kMaximumNewKilobytes);
        }
        EXPECT_EQ(virtualcam::openHandles(), 0);
        EXPECT_EQ(virtualcam::liveMappings(), 0);
    }

    // After so many actions the host has tried everything at least once.
    static constexpr long kMinimumActions = kSanitized ? 50 : 600;

    // Left to the allocator.
    static constexpr long kMaximumNewMappings = 4;
    static constexpr long kMaximumNewKilobytes = 4 * 1024;

    ScratchFolder folder_;
    int output_ = -1;
};

TEST_F(Soak, OfSessionsDoesNotGrowTheProcess) {
    const int count = fromEnvironment("DOCCAM_SOAK_SESSIONS", 20);
    expectFlat(std::max(4, count / 10), count, "sessions", [](int some) { sessions(some); });
}

TEST_F(Soak, OfFramesWithARestlessHostDoesNotGrowTheProcess) {
    const int count = fromEnvironment("DOCCAM_SOAK_FRAMES", kSanitized ? 100 : 300);
    expectFlat(std::max(kSanitized ? 30 : 100, count / 10), count, "frames",
               [this](int some) { framesWithARestlessHost(some); });
}

} // namespace
} // namespace doccam::test
