// Reading and writing on a connection, with time limits.
#include "serve/http/request_server.h"
#include "waiting.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

namespace doccam::serve {
namespace {

class ConnectionStreamTest : public testing::Test {
  protected:
    ConnectionStreamTest() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends_), 0); }

    ~ConnectionStreamTest() override {
        close(ends_[0]);
        hangUp();
    }

    void say(const std::string& text) {
        EXPECT_EQ(send(ends_[1], text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    }

    void hangUp() {
        close(peer());
        ends_[1] = -1;
    }

    int peer() const { return ends_[1]; }

    void endSaying() { EXPECT_EQ(shutdown(peer(), SHUT_WR), 0); }

    int own() const { return ends_[0]; }

    ConnectionStream streamWith(const ConnectionLimits& limits) const {
        return {own(), "", limits};
    }

  private:
    int ends_[2] = {-1, -1};
};

// Byte by byte, as lines are read.
std::string readAll(ConnectionStream& stream, std::size_t limit) {
    std::string text;
    char c = 0;
    while (text.size() < limit && stream.read(&c, 1) == 1) {
        text += c;
    }
    return text;
}

TEST_F(ConnectionStreamTest, ReadsEarlierBytesFirst) {
    ConnectionStream stream(own(), "head", {.patience = kLong});
    say("body");
    EXPECT_EQ(readAll(stream, 8), "headbody");
}

TEST_F(ConnectionStreamTest, ReadsEarlierBytesEvenAfterTheTimeLimit) {
    ConnectionStream stream(own(), "head", {.patience = kNoTime});
    EXPECT_TRUE(stream.is_readable());
    EXPECT_EQ(readAll(stream, 8), "head");
}

TEST_F(ConnectionStreamTest, ReadsNothingAfterTheTimeLimit) {
    ConnectionStream stream = streamWith({.patience = kNoTime});
    say("late");
    EXPECT_FALSE(stream.is_readable());
    EXPECT_EQ(readAll(stream, 4), "");
}

TEST_F(ConnectionStreamTest, GivesUpOnASilentPeer) {
    ConnectionStream stream = streamWith({.patience = std::chrono::milliseconds(1)});
    EXPECT_EQ(readAll(stream, 1), "");
}

TEST_F(ConnectionStreamTest, ReadsToTheEndOfAPeerThatHungUp) {
    ConnectionStream stream = streamWith({.patience = kLong});
    say("bye");
    hangUp();
    EXPECT_EQ(readAll(stream, 100), "bye");
}

TEST_F(ConnectionStreamTest, WritesWhileThePeerIsThere) {
    ConnectionStream stream = streamWith({.patience = kNoTime});
    EXPECT_TRUE(stream.is_writable());
    EXPECT_EQ(stream.write("answer", 6), 6);
    hangUp();
    EXPECT_FALSE(stream.is_writable());
    EXPECT_EQ(stream.write("answer", 6), -1);
}

TEST_F(ConnectionStreamTest, WritesToAPeerThatHasShutDownItsSide) {
    ConnectionStream stream = streamWith({.patience = kNoTime});
    endSaying();
    EXPECT_TRUE(stream.is_writable());
    EXPECT_EQ(stream.write("answer", 6), 6);
}

TEST_F(ConnectionStreamTest, GivesUpOnAPeerThatReadsNothing) {
    ConnectionStream stream = streamWith({.writePatience = std::chrono::milliseconds(1)});
    const std::string much(1024 * 1024, 'x');
    ssize_t taken = 0;
    while (taken >= 0) {
        taken = stream.write(much.data(), much.size());
    }
    EXPECT_FALSE(stream.is_writable());
}

} // namespace
} // namespace doccam::serve
