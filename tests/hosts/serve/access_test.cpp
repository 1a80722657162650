// Who may talk to the server.
#include "serve/access/access.h"

#include <gtest/gtest.h>

namespace doccam::serve {
namespace {

const std::string kToken = "0123456789abcdef";

AccessRules loopbackRules() {
    return rulesFor("127.0.0.1", 8123, kToken);
}

Credentials goodCredentials() {
    return {"127.0.0.1:8123", std::nullopt, "Bearer " + kToken};
}

Verdict verdictForHost(const AccessRules& rules, const std::string& host) {
    Credentials credentials = goodCredentials();
    credentials.host = host;
    return judge(rules, credentials);
}

Verdict verdictForOrigin(const std::string& origin) {
    Credentials credentials = goodCredentials();
    credentials.origin = origin;
    return judge(loopbackRules(), credentials);
}

} // namespace

TEST(RandomToken, Has64DigitsAndNeverRepeats) {
    const std::string token = randomToken();
    EXPECT_EQ(token.size(), 64U);
    EXPECT_EQ(token.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_NE(token, randomToken());
}

TEST(SameSecret, IsEqualityOfTexts) {
    EXPECT_TRUE(sameSecret("abc", "abc"));
    EXPECT_FALSE(sameSecret("abc", "abd"));
    EXPECT_FALSE(sameSecret("bbc", "abc"));
    EXPECT_FALSE(sameSecret("ab", "abc"));
    EXPECT_FALSE(sameSecret("", "abc"));
}

TEST(Access, IsGrantedUnderTheServersOwnNames) {
    for (const char* host : {"127.0.0.1:8123", "localhost:8123", "LocalHost:8123", "[::1]:8123"}) {
        EXPECT_EQ(verdictForHost(loopbackRules(), host), Verdict::kAllowed) << host;
    }
}

TEST(Access, IsRefusedUnderForeignNames) {
    for (const char* host : {"", ":8123", "evil.example:8123", "localhost.evil.example:8123",
                             "127.0.0.1", "127.0.0.1:80", "127.0.0.1:81230", "127.0.0.1:8123:8123",
                             "192.168.1.7:8123", "x127.0.0.1:8123"}) {
        EXPECT_EQ(verdictForHost(loopbackRules(), host), Verdict::kForeignHost) << host;
    }
}

TEST(Access, ToANetworkServerIsGrantedByAddressButNotByName) {
    const AccessRules rules = rulesFor("0.0.0.0", 8123, kToken);
    EXPECT_EQ(verdictForHost(rules, "192.168.1.7:8123"), Verdict::kAllowed);
    EXPECT_EQ(verdictForHost(rules, "[fe80::1]:8123"), Verdict::kAllowed);
    EXPECT_EQ(verdictForHost(rules, "evil.example:8123"), Verdict::kForeignHost);
    EXPECT_EQ(verdictForHost(rules, "1.2.3:8123"), Verdict::kForeignHost);
    EXPECT_EQ(verdictForHost(rules, "[evil]:8123"), Verdict::kForeignHost);
}

TEST(Access, ToPort80NeedsNoPortInTheName) {
    const AccessRules rules = rulesFor("127.0.0.1", 80, kToken);
    EXPECT_EQ(verdictForHost(rules, "localhost"), Verdict::kAllowed);
    EXPECT_EQ(verdictForHost(rules, "localhost:80"), Verdict::kAllowed);
}

TEST(Access, IsRefusedToOtherOrigins) {
    EXPECT_EQ(verdictForOrigin("http://127.0.0.1:8123"), Verdict::kAllowed);
    for (const char* origin : {"", "null", "https://127.0.0.1:8123", "http://127.0.0.1:8124",
                               "http://localhost:8123", "http://127.0.0.1:8123.evil.example"}) {
        EXPECT_EQ(verdictForOrigin(origin), Verdict::kForeignOrigin) << origin;
    }
}

TEST(Access, NeedsTheToken) {
    Credentials credentials = goodCredentials();
    for (const std::string& wrong : std::initializer_list<std::string>{
             "", kToken, "Bearer", "Bearer " + kToken + "0", "Bearer " + kToken.substr(1),
             "Bearer " + std::string(16, 'f'), "Bearer  " + kToken, "Basic " + kToken}) {
        credentials.authorization = wrong;
        EXPECT_EQ(judge(loopbackRules(), credentials), Verdict::kNoToken) << wrong;
    }
}

TEST(Access, AcceptsTheSchemeInUpperAndLowerCase) {
    Credentials credentials = goodCredentials();
    credentials.authorization = "bearer " + kToken;
    EXPECT_EQ(judge(loopbackRules(), credentials), Verdict::kAllowed);
}

} // namespace doccam::serve
