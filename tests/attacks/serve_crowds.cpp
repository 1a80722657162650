// Connections to doccam serve that only occupy its places.
#include "attacks/serve_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace doccam::test {
namespace {

using testing::StartsWith;

constexpr std::size_t kMemoryKb = 16 * 1024; // maximum cost of a crowd while connected
constexpr std::size_t kDescriptors = 300;

std::vector<Visitor> crowd(const ServeHost& host, int count, const std::string& said) {
    std::vector<Visitor> visitors;
    for (int i = 0; i < count; ++i) {
        visitors.push_back(host.visitor());
        visitors.back().say(said);
    }
    return visitors;
}

std::string state(const ServeHost& host) {
    return host.ask(host.ownHead("GET /api/state"));
}

} // namespace

// With a thread for each of them, none would be left for the newcomer.
TEST(ServeAttack, SlowHeadsKeepNoNewcomerWaiting) {
    const ServeHost host;
    const auto slow = crowd(host, 60, "GET / HTTP/1.1\r\nX-Slow: ");
    EXPECT_THAT(state(host), StartsWith("HTTP/1.1 200 "));
    for (const Visitor& visitor : slow) {
        EXPECT_TRUE(visitor.isWaiting());
    }
}

TEST(ServeAttack, SlowHeadsCostLittle) {
    const ServeHost host;
    const std::size_t before = host.residentKb();
    const auto slow = crowd(host, 200, "GET / HTTP/1.1\r\nX-Slow: " + std::string(15000, 'x'));
    EXPECT_THAT(state(host), StartsWith("HTTP/1.1 200 "));
    EXPECT_LE(host.residentKb(), before + kMemoryKb);
    EXPECT_LE(host.descriptors(), kDescriptors);
}

TEST(ServeAttack, SilentConnectionsCostLittle) {
    const ServeHost host;
    const std::size_t before = host.residentKb();
    const std::size_t descriptors = host.descriptors();
    {
        const auto silent = crowd(host, 500, "");
        EXPECT_THAT(state(host), StartsWith("HTTP/1.1 200 "));
        EXPECT_LE(host.residentKb(), before + kMemoryKb);
        EXPECT_LE(host.descriptors(), kDescriptors);
        silent.back().say(host.ownHead("GET /api/state") + "\r\n");
        EXPECT_THAT(silent.back().hear(), StartsWith("HTTP/1.1 200 ")) << "the last still counts";
    }
    while (host.descriptors() > descriptors) { // until the server has noticed the disconnections
        EXPECT_THAT(state(host), StartsWith("HTTP/1.1 200 "));
    }
}

TEST(ServeAttack, UnreadAnswersCostLittle) {
    const ServeHost host;
    const std::size_t before = host.residentKb();
    const auto deaf = crowd(host, 200, host.head("GET /main.js") + "\r\n");
    EXPECT_THAT(state(host), StartsWith("HTTP/1.1 200 "));
    EXPECT_LE(host.residentKb(), before + kMemoryKb);
}

} // namespace doccam::test
