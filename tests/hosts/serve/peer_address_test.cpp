// Which connection makes room for a new one.
#include "serve/http/reception.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>

#include <cstring>

namespace doccam::serve {
namespace {

template <typename Address>
PeerAddress stored(const Address& address) {
    sockaddr_storage storage{};
    std::memcpy(&storage, &address, sizeof address);
    return peerAddressOf(storage);
}

PeerAddress four(const char* text) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    inet_pton(AF_INET, text, &address.sin_addr);
    return stored(address);
}

PeerAddress six(const char* text) {
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    inet_pton(AF_INET6, text, &address.sin6_addr);
    return stored(address);
}

constexpr RoomLimits kSmall{4, 2};

} // namespace

TEST(PeerAddress, IsOnePerIpv6Network) {
    EXPECT_EQ(six("2001:db8:1:2::3"), six("2001:db8:1:2:ffff::4"));
    EXPECT_NE(six("2001:db8:1:2::3"), six("2001:db8:1:3::3"));
    EXPECT_NE(four("10.0.0.1"), four("10.0.0.2"));
}

TEST(PeerAddress, IsTheSameThroughBothProtocols) {
    EXPECT_EQ(six("::ffff:10.0.0.1"), four("10.0.0.1"));
    EXPECT_NE(six("::10.0.0.1"), four("10.0.0.1"));
}

TEST(Leaver, IsNobodyWhileThereIsRoom) {
    EXPECT_EQ(leaverFor(four("1.1.1.1"), {}, kSmall), std::nullopt);
    EXPECT_EQ(
        leaverFor(four("1.1.1.1"), {four("1.1.1.1"), four("2.2.2.2"), four("3.3.3.3")}, kSmall),
        std::nullopt);
}

TEST(Leaver, IsTheOldestOfAnAddressThatHasAllItsPlaces) {
    EXPECT_EQ(
        leaverFor(four("1.1.1.1"), {four("2.2.2.2"), four("1.1.1.1"), four("1.1.1.1")}, kSmall),
        1U);
}

TEST(Leaver, IsTheOldestOfTheMostCrowdedAddressWhenAllPlacesAreTaken) {
    EXPECT_EQ(leaverFor(four("9.9.9.9"),
                        {four("1.1.1.1"), four("2.2.2.2"), four("3.3.3.3"), four("2.2.2.2")},
                        kSmall),
              1U);
}

} // namespace doccam::serve
