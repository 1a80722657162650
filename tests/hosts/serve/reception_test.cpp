// Connections until their request is known.
#include "serve/http/plain_answer.h"
#include "serve/http/reception.h"
#include "waiting.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <future>
#include <string>
#include <vector>

namespace doccam::serve {
namespace {

using testing::StartsWith;

constexpr const char* kRequest = "GET / HTTP/1.1\r\n\r\n";

class Client {
  public:
    explicit Client(const sockaddr_in& server)
      : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        EXPECT_EQ(connect(socket_.get(), reinterpret_cast<const sockaddr*>(&server), sizeof server),
                  0);
    }

    void say(const std::string& text) const {
        EXPECT_EQ(send(socket_.get(), text.data(), text.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(text.size()));
    }

    void endSaying() const { shutdown(socket_.get(), SHUT_WR); }

    // Everything received until the connection ends.
    std::string hear() const {
        std::string text;
        char bytes[1024];
        ssize_t count = 0;
        while ((count = recv(socket_.get(), bytes, sizeof bytes, 0)) > 0) {
            text.append(bytes, static_cast<std::size_t>(count));
        }
        return text;
    }

    bool isOpen() const {
        pollfd state{socket_.get(), POLLIN, 0};
        return poll(&state, 1, 0) == 0;
    }

  private:
    UniqueFd socket_;
};

class ReceptionTest : public testing::Test {
  protected:
    ReceptionTest()
      : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address_;
        EXPECT_EQ(bind(listener_.get(), reinterpret_cast<sockaddr*>(&address_), length), 0);
        EXPECT_EQ(listen(listener_.get(), SOMAXCONN), 0);
        getsockname(listener_.get(), reinterpret_cast<sockaddr*>(&address_), &length);
    }

    int listener() const { return listener_.get(); }

    Client client() const { return Client(address_); }

    // Responds to each request with its target.
    static Desk echo() {
        return {[](const RequestHead& head) { return std::optional(head.target); },
                [](const RequestHead&, UniqueFd&, const std::string&) { return std::nullopt; }};
    }

  private:
    UniqueFd listener_;
    sockaddr_in address_{};
};

TEST_F(ReceptionTest, AnswersWhatNeedsNoHandler) {
    const Reception reception(listener(), echo(), {.headPatience = kLong});
    const Client one = client();
    one.say("GET /a HT");
    const Client other = client();
    other.say("GET /b HTTP/1.1\r\n\r\n");
    EXPECT_EQ(other.hear(), "/b");
    one.say("TP/1.1\r\n\r\n");
    EXPECT_EQ(one.hear(), "/a");
}

TEST_F(ReceptionTest, HandsOverARequestWithTheReceivedPartOfItsBody) {
    std::promise<std::string> received;
    const Reception reception(
        listener(),
        {[](const RequestHead&) { return std::nullopt; },
         [&](const RequestHead& head, UniqueFd& socket, const std::string& body) {
             const UniqueFd taken = std::move(socket);
             received.set_value(head.method + body);
             return std::nullopt;
         }},
        {.headPatience = kLong});
    const Client one = client();
    one.say("POST / HTTP/1.1\r\n\r\nbody");
    EXPECT_EQ(received.get_future().get(), "POSTbody");
    EXPECT_EQ(one.hear(), "");
}

TEST_F(ReceptionTest, AnswersAClientThatHasShutDownItsSide) {
    const Reception reception(listener(), echo(), {.headPatience = kLong});
    const Client one = client();
    one.say(kRequest);
    one.endSaying();
    EXPECT_EQ(one.hear(), "/");
}

TEST_F(ReceptionTest, RefusesAMalformedHead) {
    const Reception reception(listener(), echo(), {.longestHead = 64, .headPatience = kLong});
    for (const std::string text : {"\x16\x03\x01", "nonsense", "GET / HTTP/3\r\n\r\n"}) {
        const Client one = client();
        one.say(text);
        EXPECT_THAT(one.hear(), StartsWith("HTTP/1.1 400 ")) << text;
    }
    const Client talker = client();
    talker.say("GET /" + std::string(100, 'x'));
    EXPECT_THAT(talker.hear(), StartsWith("HTTP/1.1 431 "));
}

TEST_F(ReceptionTest, DisconnectsASlowClient) {
    const Reception reception(listener(), echo(), {.headPatience = std::chrono::milliseconds(1)});
    const Client one = client();
    one.say("GET / HTTP/1.1\r\n");
    EXPECT_EQ(one.hear(), "");
}

TEST_F(ReceptionTest, DropsTheOldestSilentClientForANewOne) {
    const Reception reception(listener(), echo(), {.headPatience = kLong, .room = {8, 3}});
    const Client oldest = client();
    const Client older = client();
    const Client old = client();
    const Client newcomer = client();
    newcomer.say(kRequest);
    EXPECT_EQ(newcomer.hear(), "/");
    EXPECT_EQ(oldest.hear(), "");
    EXPECT_TRUE(older.isOpen());
    EXPECT_TRUE(old.isOpen());
}

TEST_F(ReceptionTest, DiscardsWhatARefusedClientStillSends) {
    const Reception reception(listener(), echo(), {.headPatience = kLong, .leavePatience = kLong});
    const Client one = client();
    one.say(kRequest + std::string(100000, 'x'));
    EXPECT_EQ(one.hear(), "/");
}

} // namespace
} // namespace doccam::serve
