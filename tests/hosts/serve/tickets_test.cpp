// Single-use permits for one path that soon expire.
#include "serve/access/access.h"

#include <gtest/gtest.h>

#include <string>

namespace doccam::serve {

TEST(Tickets, OpenOnePathOnce) {
    Tickets tickets;
    const std::string ticket = tickets.issue("/a");
    EXPECT_FALSE(tickets.redeem(ticket, "/b"));
    EXPECT_TRUE(tickets.redeem(ticket, "/a"));
    EXPECT_FALSE(tickets.redeem(ticket, "/a"));
}

TEST(Tickets, OpenNothingThatWasNotIssued) {
    Tickets tickets;
    const std::string ticket = tickets.issue("/a");
    EXPECT_FALSE(tickets.redeem("", "/a"));
    EXPECT_FALSE(tickets.redeem(ticket.substr(1), "/a"));
    EXPECT_FALSE(tickets.redeem(std::string(ticket.size(), '0'), "/a"));
}

TEST(Tickets, ExpireWithTime) {
    Tickets::Clock::time_point now{};
    Tickets tickets([&] { return now; });
    const std::string early = tickets.issue("/a");
    const std::string late = tickets.issue("/a");
    now += Tickets::kLifetime - std::chrono::milliseconds(1);
    EXPECT_TRUE(tickets.redeem(early, "/a"));
    now += std::chrono::milliseconds(1);
    EXPECT_FALSE(tickets.redeem(late, "/a"));
}

TEST(Tickets, AreForgottenWhenTooManyAreUnused) {
    Tickets tickets;
    const std::string oldest = tickets.issue("/a");
    const std::string older = tickets.issue("/a");
    for (std::size_t i = 1; i < Tickets::kMaximumOpen; ++i) {
        tickets.issue("/b");
    }
    EXPECT_FALSE(tickets.redeem(oldest, "/a"));
    EXPECT_TRUE(tickets.redeem(older, "/a"));
}

} // namespace doccam::serve
