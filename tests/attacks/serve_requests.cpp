// Malicious requests to doccam serve.
#include "attacks/serve_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace doccam::test {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr std::size_t kSmall = 1024;

// What a small refusal is the answer to.
std::string manyRanges() {
    std::string header = "Range: bytes=0-0";
    for (int i = 1; i < 1500; ++i) {
        header += ",0-0";
    }
    return header + "\r\n";
}

} // namespace

TEST(ServeAttack, RangesEndNoProcessWithASmallStack) {
    ServeHost host({.stackKb = 2048});
    EXPECT_THAT(host.ask(host.head("GET /api/state") + manyRanges()), StartsWith("HTTP/1.1 403 "));
    EXPECT_THAT(host.ask(host.ownHead("GET /api/state") + manyRanges()),
                StartsWith("HTTP/1.1 200 "));
    EXPECT_EQ(host.end(), 0);
}

TEST(ServeAttack, RangesMultiplyNoAnswer) {
    ServeHost host;
    EXPECT_LE(host.ask(host.head("GET /api/state") + manyRanges()).size(), kSmall);
    EXPECT_EQ(host.ask(host.head("GET /main.js") + manyRanges()).size(),
              host.ask(host.head("GET /main.js")).size());
    EXPECT_LE(host.ask(host.head("GET /pages/1.jpg") + manyRanges()).size(), kSmall);
}

TEST(ServeAttack, RefusalsAreSmallAndComeBeforeTheBody) {
    const ServeHost host;
    const std::string json = "Content-Type: application/json\r\nContent-Length: ";
    for (const std::string& head :
         {host.head("GET /api/state"), host.head("GET /api/state") + "Accept: text/html\r\n",
          host.head("POST /api/capture") + json + "60000\r\n",
          host.ownHead("POST /api/capture") + json + "70000\r\n",
          host.ownHead("GET /" + std::string(600, 'x')), host.ownHead("DELETE /"),
          std::string("nonsense\r\n")}) {
        const std::string answer = host.ask(head);
        EXPECT_THAT(answer, StartsWith("HTTP/1.1 4")) << head;
        EXPECT_LE(answer.size(), kSmall) << head;
    }
}

TEST(ServeAttack, NoCookieCarriesTheToken) {
    const ServeHost host;
    for (const char* path : {"GET /", "GET /main.js", "GET /api/state", "GET /nothing"}) {
        EXPECT_THAT(host.ask(host.ownHead(path)), Not(HasSubstr("Set-Cookie"))) << path;
    }
    for (const std::string& name : {std::string("token"), std::string("doccam")}) {
        const std::string answer =
            host.ask(host.head("GET /api/state") + "Cookie: " + name + "=" + host.token() + "\r\n");
        EXPECT_THAT(answer, StartsWith("HTTP/1.1 403 "));
    }
    EXPECT_THAT(host.ask(host.head("GET /api/state?token=" + host.token())),
                StartsWith("HTTP/1.1 403 "));
}

TEST(ServeAttack, TheTokenIsForItsUserAlone) {
    namespace fs = std::filesystem;
    const ServeHost host;
    EXPECT_EQ(fs::status(host.stateFolder()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(host.stateFolder() + "/serve-token").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST(ServeAttack, TheTokenSurvivesARestart) {
    namespace fs = std::filesystem;
    ServeHost first;
    const std::string state = fs::path(first.stateFolder()).parent_path();
    EXPECT_EQ(first.end(), 0);
    const fs::path file = first.stateFolder() + "/serve-token";
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    const ServeHost second({.state = state});
    EXPECT_EQ(second.token(), first.token());
    fs::permissions(file, fs::perms::group_read, fs::perm_options::add);
    EXPECT_NE(ServeHost({.state = state}).token(), first.token()) << "others may have read it";
}

TEST(ServeAttack, AClientThatHasSaidAllGetsItsAnswer) {
    const ServeHost host;
    for (const char* path : {"GET /", "GET /api/state", "GET /nothing"}) {
        const Visitor client = host.visitor();
        client.say(host.ownHead(path) + "\r\n");
        client.endSaying();
        EXPECT_THAT(client.hear(), AnyOf(StartsWith("HTTP/1.1 200 "), StartsWith("HTTP/1.1 404 ")))
            << path;
    }
    for (const auto& [path, part] : {std::pair{"GET /events", "event: camera"},
                                     std::pair{"GET /preview", "Content-Length: "}}) {
        const Visitor client = host.visitor();
        client.say(host.ownHead(path) + "\r\n");
        client.endSaying();
        EXPECT_THAT(client.hear(part), HasSubstr(part)) << path;
    }
}

} // namespace doccam::test
