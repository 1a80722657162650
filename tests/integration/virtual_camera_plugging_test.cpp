// Controlling the cameras of another program.
#include "remote/line_socket.h"
#include "remote/plugging.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <thread>

namespace doccam::virtualcam {
namespace {

class LineSocketTest : public testing::Test {
  protected:
    test::ScratchFolder folder_;
    const std::string path_ = folder_.file("control");
};

int connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    return client;
}

// Waits until the other side has read everything sent.
void awaitRead(int client) {
    int unread = 1;
    while (unread != 0 && ioctl(client, SIOCOUTQ, &unread) == 0) {
        std::this_thread::yield();
    }
}

std::string echo(const std::string& line) {
    return "heard " + line;
}

TEST_F(LineSocketTest, AnswersEachLine) {
    const LineSocket socket(path_, echo);
    EXPECT_EQ(ask(path_, "one"), "heard one");
    EXPECT_EQ(ask(path_, ""), "heard ");
}

TEST_F(LineSocketTest, LeavesNoSocketBehind) {
    { const LineSocket socket(path_, echo); }
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_THROW(ask(path_, "one"), std::runtime_error);
}

TEST_F(LineSocketTest, EndsThoughAClientSaysNothing) {
    std::optional<LineSocket> socket(std::in_place, path_, echo);
    const int client = connectTo(path_);
    ASSERT_EQ(send(client, "x", 1, 0), 1);
    awaitRead(client);
    socket.reset();
    close(client);
}

TEST_F(LineSocketTest, RefusesAPathInUse) {
    const LineSocket first(path_, echo);
    EXPECT_THROW(LineSocket(path_, echo), std::runtime_error);
    EXPECT_EQ(ask(path_, "one"), "heard one");
}

TEST_F(LineSocketTest, RefusesAPathThatNoSocketCanHave) {
    EXPECT_THROW(LineSocket(folder_.file(std::string(200, 'x')), echo), std::runtime_error);
}

TEST(PlugRequest, NamesACameraByItsPlace) {
    const auto plug = parsePlugRequest("plug 1");
    ASSERT_TRUE(plug);
    EXPECT_TRUE(plug->plug);
    EXPECT_EQ(plug->camera, 1);
    const auto unplug = parsePlugRequest("unplug 0");
    ASSERT_TRUE(unplug);
    EXPECT_FALSE(unplug->plug);
    for (const char* line : {"", "plug", "plug -1", "pull 0", "plug x"}) {
        EXPECT_FALSE(parsePlugRequest(line)) << line;
    }
}

TEST(FramesRequest, NamesACameraByItsPlace) {
    EXPECT_EQ(parseFramesRequest("frames 1"), 1);
    for (const char* line : {"", "frames", "frames -1", "plug 0"}) {
        EXPECT_FALSE(parseFramesRequest(line)) << line;
    }
}

TEST(FramesAnswer, CountsFrames) {
    const auto count = parseFrameCount("ok 40 3 120");
    ASSERT_TRUE(count);
    EXPECT_EQ(count->sent, 40U);
    EXPECT_EQ(count->missed, 3U);
    EXPECT_EQ(count->longestWait, 120);
    EXPECT_FALSE(parseFrameCount("ok 40"));
    EXPECT_FALSE(parseFrameCount("error: no such camera"));
}

TEST(PlugAnswer, NamesTheNewNodes) {
    const auto nodes = parseNodes("ok 4 5");
    ASSERT_TRUE(nodes);
    EXPECT_EQ(nodes->capture, 4);
    EXPECT_EQ(nodes->metadata, 5);
    EXPECT_FALSE(parseNodes("ok"));
    EXPECT_FALSE(parseNodes("error: no such camera"));
}

} // namespace
} // namespace doccam::virtualcam
